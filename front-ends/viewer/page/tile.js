// A tile: one channel's live image, and what is known about it.
import { button, element, setText } from "./elements.js";
import { Geometry } from "./geometry.js";
import { Histogram } from "./histogram.js";
import { recall, remember } from "./memory.js";
import { drawOverlay, drawProfile } from "./overlay.js";
import { Pointers } from "./pointers.js";
import { CanvasRenderer } from "./renderer-canvas.js";
import { WebGlRenderer } from "./renderer-webgl.js";
import { tileTools } from "./tile-tools.js";
import { ageText, rateText, reasonText } from "./tile-texts.js";

const FORCED_CANVAS = new URLSearchParams(location.hash.slice(1)).get("renderer") === "canvas";

// Under which choices for a channel are remembered.
export function keyOf(entry) {
  return `tile.${entry.board.serial}.${entry.channel.index}`;
}

function makeRenderer(canvas) {
  if (!FORCED_CANVAS) {
    try {
      return new WebGlRenderer(canvas);
    } catch {
      // A canvas that has refused WebGL2 still gives a plain one.
    }
  }
  return new CanvasRenderer(canvas);
}

export class Tile {
  // app: connection, state, run(promise), enlarge(tile)
  constructor(app, entry) {
    this.app = app;
    this.id = entry.channel.id;
    this.key = keyOf(entry);
    this.geometry = new Geometry();
    this.look = { low: 0, high: 255, gamma: 1, coloured: false, marked: false, automatic: false, highest: 255,
      ...recall(this.key, {}) };
    this.image = null;
    this.pixel = null;
    this.line = null;
    this.visible = false;
    this.view = 0;
    this.drawn = [];
    this.build(entry);
    this.update(entry);
    this.renderer = makeRenderer(this.canvas);
    this.root.dataset.renderer = this.renderer instanceof WebGlRenderer ? "webgl2" : "canvas";
    this.pointers = new Pointers(this);
    this.observer = new ResizeObserver(() => this.resize());
    this.observer.observe(this.stage);
    this.sight = new IntersectionObserver((changes) => this.beVisible(changes.at(-1).isIntersecting));
    this.sight.observe(this.root);
  }

  build(entry) {
    const title = entry.channel.title;
    this.title = element("h2", {}, title);
    this.startButton = button("Start", () => this.toggle(), { class: "main" });
    this.largeButton = button("Enlarge", () => this.app.enlarge(this), { "aria-pressed": "false" });
    this.canvas = element("canvas", { class: "image" });
    this.over = element("canvas", { class: "over", "aria-hidden": "true" });
    this.reason = element("span", { role: "status" });
    this.age = element("span", { "aria-hidden": "true" }); // changes each second: not to be read out
    this.why = element("p", { class: "why" }, this.reason, this.age);
    this.position = element("p", { class: "position" });
    this.stage = element("div", {
      class: "stage", tabindex: "0", role: "application", "aria-roledescription": "live image",
      "aria-label": `${title}. Plus and minus zoom, arrows pan, 0 fits, 1 shows one to one, r turns, f flips, ` +
        "a sets the contrast, p draws a line, s saves, Enter enlarges, Shift with arrows moves the pointer or the line's end.",
    }, this.canvas, this.over, this.why, this.position);
    this.histogram = new Histogram((low, high) => this.setLook({ low, high, automatic: false }));
    this.profile = element("canvas", { class: "profile", hidden: true, role: "img", "aria-label": "Line profile" });
    this.facts = element("p", { class: "facts small quiet" });
    this.tools = tileTools(this);
    this.root = element("section", { class: "tile", "aria-label": title, "data-channel": `${entry.board.index}/${entry.channel.index}` },
      element("header", {}, this.title, this.startButton, this.largeButton),
      this.stage, this.profile, this.histogram.root, this.tools.root,
      element("footer", {}, this.facts));
    this.histogram.setRange(this.look.low, this.look.high, this.look.highest);
  }

  // The channel's entry in the state document, which is another one after each change.
  update(entry) {
    this.entry = entry;
    const { channel } = entry;
    this.startButton.textContent = channel.grabbing ? "Stop" : "Start";
    this.startButton.setAttribute("aria-label", `${channel.grabbing ? "Stop" : "Start"} ${channel.title}`);
    if (this.geometry.setImage(channel.width, channel.height)) this.ask();
    this.tell();
  }

  toggle() {
    const { board, channel } = this.entry;
    const name = channel.grabbing ? "stop" : "start";
    this.app.run(name, { board: board.serial, kind: "dma", index: channel.index });
  }

  // As it was acquired, under a name of the program's choice.
  async save() {
    const { board, channel } = this.entry;
    const saved = await this.app.run("save-image", { board: board.serial, dma: channel.index });
    if (saved) this.app.say("information", "Saved", `${saved.name} in ${saved.folder}`);
  }

  resize() {
    const ratio = window.devicePixelRatio || 1;
    const width = Math.round(this.stage.clientWidth * ratio);
    const height = Math.round(this.stage.clientHeight * ratio);
    if (!width || !height) return;
    for (const canvas of [this.canvas, this.over]) {
      canvas.width = width;
      canvas.height = height;
    }
    this.geometry.setStage(width, height);
    this.changed();
  }

  // The geometry is another one: draw what there is, and ask for what is missing.
  changed() {
    this.draw();
    this.ask();
    this.tools.update();
  }

  // At most once a frame.
  ask() {
    if (this.asking) return;
    this.asking = requestAnimationFrame(() => {
      this.asking = null;
      this.askNow();
    });
  }

  // Another tile is enlarged, or this one is scrolled out of sight: its images are not sent.
  beVisible(visible) {
    this.visible = visible;
    if (visible) this.ask();
    else this.hide();
  }

  hide() {
    this.app.connection.sendObject({ type: "hide", channel: this.id });
  }

  askNow() {
    if (!this.visible) return;
    const { region, screen } = this.geometry.visible();
    this.app.connection.sendObject({
      type: "show", channel: this.id, view: ++this.view, region, screen, histogram: true, pixel: this.pixel, line: this.line,
    });
  }

  // An image has come. It is drawn with the next frame and then acknowledged, which brings the next one.
  take(image) {
    const first = !this.image;
    this.image = image;
    if (first) this.tools.update();
    if (image.highest !== this.look.highest) this.setLook({ low: 0, high: image.highest, highest: image.highest });
    this.geometry.setImage(image.fullWidth, image.fullHeight);
    if (this.drawing) return;
    this.drawing = requestAnimationFrame((now) => {
      this.drawing = null;
      this.drawn = this.drawn.filter((time) => now - time < 1000).concat(now);
      this.draw();
      this.app.connection.sendObject({ type: "shown", channel: this.id });
    });
  }

  draw() {
    this.renderer.draw(this.image, this.geometry, this.look);
    drawOverlay(this.over, this.geometry, this.line);
    if (this.image) this.root.dataset.image = this.image.number;
  }

  takeHistogram(message) {
    this.latest = message;
    this.histogram.show(message);
    if (this.look.automatic) this.follow(message);
  }

  // Not remembered: only what the user chooses is.
  follow({ dark, bright }) {
    const [low, high] = [dark, Math.max(bright, dark + 1)];
    if (low === this.look.low && high === this.look.high) return;
    Object.assign(this.look, { low, high });
    this.histogram.setRange(low, high, this.look.highest);
    this.draw();
  }

  takeValues(message) {
    if (message.at && this.pixel && message.at.join() === this.pixel.join()) {
      const text = message.pixel.length ? message.pixel.join(", ") : "outside";
      this.position.textContent = `x ${message.at[0]}, y ${message.at[1]}: ${text}`;
    }
    if (!message.line || !this.line) return;
    this.samples = message;
    drawProfile(this.profile, message.line, this.look.highest);
  }

  setLook(changes) {
    Object.assign(this.look, changes);
    this.histogram.setRange(this.look.low, this.look.high, this.look.highest);
    remember(this.key, this.look);
    this.tools.update();
    this.draw();
  }

  setPixel(pixel) {
    if (pixel?.join() === this.pixel?.join()) return;
    this.pixel = pixel;
    if (!pixel) this.position.textContent = "";
    this.ask();
  }

  setLining(lining) {
    this.lining = lining;
    this.setLine(null);
  }

  setLine(line) {
    this.line = line;
    this.profile.hidden = !line;
    this.changed();
  }

  automatic() {
    this.setLook({ automatic: !this.look.automatic });
    if (this.look.automatic && this.latest) this.follow(this.latest);
  }

  // What the numbers say; called several times a second.
  tell() {
    const statistics = this.app.state.get("statistics")?.[this.id];
    const shown = this.drawn.filter((time) => performance.now() - time < 1000).length;
    setText(this.reason, reasonText(this.entry.channel, statistics));
    setText(this.age, ageText(statistics, this.app.state.time()));
    this.why.hidden = !this.why.textContent;
    setText(this.facts, rateText(this.entry.channel, statistics, shown, this.image, this.latest));
  }

  end() {
    this.observer.disconnect();
    this.sight.disconnect();
    cancelAnimationFrame(this.asking);
    cancelAnimationFrame(this.drawing);
    this.hide();
    this.root.remove();
  }
}

// The page: puts its parts together.
import { Connection } from "./connection.js";
import { button, element, replaceContent } from "./elements.js";
import { readImage } from "./image-message.js";
import { ConfigurationsPanel } from "./configurations.js";
import { MachinePanel } from "./machine.js";
import { recall, remember } from "./memory.js";
import { LogPanel, NoticesPanel } from "./notices.js";
import { ParametersPanel } from "./parameters.js";
import { confirmed, QuestionDialog } from "./question.js";
import { RehearsalPanel } from "./rehearsal.js";
import { AcquisitionPanel } from "./settings.js";
import { State } from "./state.js";
import { Tiles } from "./tiles.js";
import { Toasts } from "./toasts.js";

const MAX_UPLOAD_BYTES = 1 << 20;
const byId = (id) => document.getElementById(id);

class App {
  constructor() {
    this.state = new State();
    this.panels = [
      new MachinePanel(this), new AcquisitionPanel(this), new ParametersPanel(this), new ConfigurationsPanel(this),
      new NoticesPanel(this), new LogPanel(this), new RehearsalPanel(this),
    ];
    this.connection = new Connection({
      message: (message) => this.take(message),
      image: (data) => this.tiles.take(readImage(data)),
      status: (kind, text) => this.tellStatus(kind, text),
    });
    this.tiles = new Tiles(this, byId("images"));
    this.toasts = new Toasts(this, byId("toasts"));
    this.question = new QuestionDialog(this, byId("dialog"));
    this.state.on(["program", "splash"], () => this.refreshProgram());
    byId("quit").addEventListener("click", () => this.quit());
    this.buildNavigation();
    this.choosePanel(recall("panel", this.panels[0].title));
  }

  take(message) {
    if (message.type === "histogram" || message.type === "values") return this.tiles.takeMessage(message);
    this.state.take(message);
    if (message.type === "welcome") this.tiles.askAgain();
  }

  // Asks the program to do something. Its refusals come up as notices; this tells what never reached it.
  async run(name, args) {
    try {
      return await this.connection.request(name, args);
    } catch (error) {
      if (!error.noticed) this.say("error", "Not done", error.message);
      return undefined;
    }
  }

  // Hands the program the text of the file that was chosen.
  async upload(input, request, args = {}) {
    const [file] = input.files;
    if (!file) return;
    if (file.size > MAX_UPLOAD_BYTES) this.say("error", "Not done", `${file.name} has ${file.size} bytes, of at most ${MAX_UPLOAD_BYTES}.`);
    else await this.run(request, { ...args, text: await file.text() });
    input.value = "";
  }

  say(level, title, text) {
    this.toasts.show(level, title, text);
  }

  enlarge(tile) {
    this.tiles.enlarge(tile);
  }

  tellStatus(kind, text) {
    const place = byId("connection");
    place.classList.toggle("away", kind !== "open");
    document.body.dataset.connection = kind;
    if (kind !== "open") place.textContent = text;
    else this.refreshProgram();
  }

  refreshProgram() {
    const program = this.state.get("program");
    if (!program) return;
    byId("connection").textContent = program.quitting ? "The program ends." : program.ready ? "Ready" : "Starting ...";
    this.connection.ended = program.quitting;
    document.body.dataset.ready = program.ready;
    const splash = byId("splash");
    splash.hidden = program.ready;
    replaceContent(splash, (this.state.get("splash") ?? []).slice(-8).map((line) => element("div", {}, line)));
  }

  buildNavigation() {
    byId("panels").append(...this.panels.map((panel) => {
      panel.tab = button(panel.title, () => this.choosePanel(panel === this.panel ? "" : panel.title));
      panel.tab.setAttribute("aria-controls", "panel");
      return panel.tab;
    }));
  }

  choosePanel(title) {
    this.stopListening?.();
    this.panel = this.panels.find((each) => each.title === title);
    remember("panel", title);
    for (const each of this.panels) each.tab.setAttribute("aria-pressed", each === this.panel);
    byId("panel").replaceChildren();
    if (!this.panel) return;
    this.stopListening = this.state.on(this.panel.sections, () => this.renderPanel());
    this.panel.opened?.();
    this.renderPanel();
  }

  // At most once a frame, and not while nothing is known.
  renderPanel() {
    if (!this.panel || !this.state.get("program") || this.rendering) return;
    this.rendering = requestAnimationFrame(() => {
      this.rendering = null;
      this.panel?.render(byId("panel"));
    });
  }

  async quit() {
    const acquiring = this.state.channels().some(({ channel }) => channel.grabbing);
    const text = "Images are being acquired. The program stops them, unloads the boards and ends.";
    if (acquiring && !(await confirmed(byId("dialog"), "Quit?", text, "Quit"))) return;
    this.run("quit");
  }
}

window.ovraViewer = new App();

// The histogram of a whole image, with two handles between which lies the contrast.
import { element } from "./elements.js";

export class Histogram {
  // changed(low, high) is called while a handle moves.
  constructor(changed) {
    this.changed = changed;
    this.highest = 255;
    this.range = { low: 0, high: 255 };
    this.bins = null;
    this.canvas = element("canvas", { "aria-hidden": "true" });
    this.low = this.handle("Darkest value shown", "low");
    this.high = this.handle("Brightest value shown", "high");
    this.root = element("div", { class: "histogram" }, this.canvas, this.low, this.high);
  }

  handle(label, end) {
    return element("div", {
      role: "slider", tabindex: "0", "aria-label": label, "data-end": end,
      onkeydown: (event) => this.onKey(event, end),
      onpointerdown: (event) => event.target.setPointerCapture(event.pointerId),
      onpointermove: (event) => event.target.hasPointerCapture(event.pointerId) && this.drag(event, end),
    });
  }

  drag(event, end) {
    const box = this.canvas.getBoundingClientRect();
    const share = Math.min(Math.max((event.clientX - box.left) / box.width, 0), 1);
    this.move(end, Math.round(share * this.highest));
  }

  onKey(event, end) {
    const step = Math.max(1, Math.round(this.highest / 255)) * (event.shiftKey ? 10 : 1);
    const steps = { ArrowLeft: -step, ArrowDown: -step, ArrowRight: step, ArrowUp: step, PageDown: -10 * step, PageUp: 10 * step };
    let value = this.range[end];
    if (event.key in steps) value += steps[event.key];
    else if (event.key === "Home") value = 0;
    else if (event.key === "End") value = this.highest;
    else return;
    event.preventDefault();
    this.move(end, value);
  }

  move(end, value) {
    const { low, high } = this.range;
    const next = end === "low"
      ? { low: Math.min(Math.max(value, 0), high - 1), high }
      : { low, high: Math.max(Math.min(value, this.highest), low + 1) };
    this.setRange(next.low, next.high, this.highest);
    this.changed(next.low, next.high);
  }

  setRange(low, high, highest) {
    this.range = { low, high };
    this.highest = highest;
    for (const [handle, value] of [[this.low, low], [this.high, high]]) {
      handle.style.left = `${(100 * value) / highest}%`;
      handle.setAttribute("aria-valuemin", 0);
      handle.setAttribute("aria-valuemax", highest);
      handle.setAttribute("aria-valuenow", value);
    }
  }

  show(message) {
    this.bins = message.bins;
    this.draw();
  }

  draw() {
    const { canvas, bins } = this;
    if (!bins || !canvas.clientWidth) return;
    canvas.width = canvas.clientWidth;
    canvas.height = canvas.clientHeight;
    const context = canvas.getContext("2d");
    context.fillStyle = getComputedStyle(canvas).color;
    // The square root shows what is rare beside what is frequent.
    const most = Math.sqrt(Math.max(...bins, 1));
    const width = canvas.width / bins.length;
    bins.forEach((count, i) => {
      const height = (Math.sqrt(count) / most) * canvas.height;
      const left = Math.floor(i * width); // whole pixels, or gaps shine through
      context.fillRect(left, canvas.height - height, Math.ceil((i + 1) * width) - left, height);
    });
  }
}

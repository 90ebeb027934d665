// Panel "Acquisition": how far a start reaches, the question about sizes, N images, recordings.
import { button, element, replaceContent } from "./elements.js";

const REACH = ["only the channel or camera", "its whole process", "its whole board", "all boards"];
const ANSWERS = ["Apply camera dimension to DMA", "Apply DMA dimension to camera", "Ignore"];

export class AcquisitionPanel {
  constructor(app) {
    this.app = app;
    this.title = "Acquisition";
    this.sections = ["settings", "boards", "recordings", "program"];
    this.images = 100;
  }

  render(root) {
    const settings = this.app.state.get("settings");
    if (!settings) return;
    replaceContent(root, element("h2", {}, "Acquisition"), this.reach(settings), this.answer(settings), this.count(), this.recordings());
  }

  reach(settings) {
    return element("div", { class: "row" }, element("label", { for: "reach" }, "Start and stop reach"),
      element("select", { id: "reach", "data-key": "reach", onchange: (event) => this.app.run("set-sync-mode", { mode: Number(event.target.value) }) },
        REACH.map((text, i) => element("option", { value: i, selected: i === settings.syncMode }, text))));
  }

  answer(settings) {
    const text = settings.remembered === null ? "The question about image sizes is asked each time."
      : `The question about image sizes is answered with "${ANSWERS[settings.remembered]}".`;
    return element("div", { class: "row" }, element("span", { class: "grow" }, text),
      settings.remembered === null ? null : button("Ask again", () => this.app.run("forget-answer"), { "data-key": "forget" }));
  }

  count() {
    return [
      element("h3", {}, "A number of images"),
      element("div", { class: "row" }, element("label", { for: "count" }, "Images"),
        element("input", { type: "number", min: 1, id: "count", value: this.images, "data-key": "count", oninput: (event) => { this.images = Number(event.target.value); } })),
      this.app.state.channels().map(({ board, channel }) => element("div", { class: "row" },
        element("span", { class: "grow" }, channel.title),
        button("Acquire", () => this.app.run("start", { board: board.serial, kind: "dma", index: channel.index, images: this.images }),
          { disabled: channel.grabbing, "aria-label": `Acquire images of ${channel.title}`, "data-key": `acquire ${channel.id}` }),
        button("Record", () => this.app.run("record", { board: board.serial, dma: channel.index, images: this.images }),
          { "aria-label": `Record images of ${channel.title}`, "data-key": `record ${channel.id}` }))),
    ];
  }

  recordings() {
    const list = [...(this.app.state.get("recordings") ?? [])].reverse();
    if (!list.length) return null;
    return [element("h3", {}, "Recordings"), element("p", { class: "quiet small" }, `in ${this.app.state.get("program").outputFolder}`),
      list.map((recording) => this.recording(recording))];
  }

  recording(recording) {
    const state = recording.failure || (recording.ended ? (recording.cancelled ? "cancelled" : "done") : "recording ...");
    return element("div", { class: "card", "data-recording": recording.id },
      element("strong", {}, recording.name),
      element("div", { class: recording.failure ? "error" : "quiet" }, `${recording.recorded} of ${recording.wanted}, ${recording.missed} missed: ${state}`),
      element("progress", { max: recording.wanted, value: recording.recorded, "aria-label": `Recording ${recording.name}` }),
      recording.ended ? null : button("Cancel", () => this.app.run("cancel-recording", { recording: recording.id }), { "aria-label": `Cancel ${recording.name}` }));
  }
}

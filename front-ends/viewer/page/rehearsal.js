// Panel "Rehearsal": what goes wrong on purpose, on a virtual installation.
import { button, element, replaceContent } from "./elements.js";

const UNKNOWN_CONNECTORS = [0, 1, 2, 3]; // of a board whose applet does not tell
const DAMAGES = ["lost", "torn", "late"];

// The step that takes a planned one back.
export function undoing(plan) {
  const words = plan.split(" ");
  if (words[0] === "unplug") return plan.replace("unplug", "plug");
  if (words[0] === "loosen") return `loosen ${words[1]} ${words[2]} 0`;
  if (words[0] === "image-memory" || words[0] === "disk") return `${words[0]} free`;
  return "forget";
}

export class RehearsalPanel {
  constructor(app) {
    this.app = app;
    this.title = "Rehearsal";
    this.sections = ["rehearsal", "boards"];
    this.scenarios = [];
    this.entries = [];
    this.typed = { images: 10, damage: "lost", entry: "*", nth: 1, code: -1, repeat: "once", milliseconds: 100, threads: 1, bytes: 8388608 };
  }

  async opened() {
    this.scenarios = (await this.app.run("list-scenarios")) ?? [];
    const calls = this.app.state.get("rehearsal") ? await this.app.run("rehearse", { step: "calls" }) : null;
    this.entries = (calls ?? []).map((line) => line.split(/[ :]/)[0]);
    this.app.renderPanel();
  }

  step(text) {
    return this.app.run("rehearse", { step: text });
  }

  render(root) {
    const rehearsal = this.app.state.get("rehearsal");
    replaceContent(root, element("h2", {}, "Rehearsal"), rehearsal
      ? [element("p", { class: "quiet small" }, "These steps cause faults on the virtual installation."),
        this.plans(rehearsal.plans), this.cables(), this.calls(), this.shortages(), this.scenario(rehearsal.scenario)]
      : element("p", {}, "Rehearsals need a virtual installation."));
  }

  plans(plans) {
    return [element("h3", {}, "In effect"),
      element("ul", { class: "plain", "aria-label": "In effect" },
        plans.length ? null : element("li", { class: "quiet" }, "No fault is in effect."),
        plans.map((plan) => element("li", { class: "row" }, element("span", { class: "grow" }, plan),
          button(undoing(plan) === "forget" ? "Cancel faults and delays" : "Undo", () => this.step(undoing(plan)),
            { "aria-label": `Undo ${plan}`, "data-key": `undo ${plan}` }))))];
  }

  parts() {
    const boards = this.app.state.get("boards") ?? [];
    const gone = (this.app.state.get("rehearsal").plans).map((plan) => /^unplug board (\d+)$/.exec(plan)?.[1]).filter(Boolean).map(Number);
    const indices = [...new Set([...boards.map((board) => board.index), ...gone])].sort((a, b) => a - b);
    return indices.flatMap((index) => {
      const ports = (boards.find((board) => board.index === index)?.processes ?? []).flatMap((process) => process.ports);
      const connectors = ports.length ? ports.map((port) => port.connector ?? port.index) : UNKNOWN_CONNECTORS;
      return [`board ${index}`, ...connectors.map((connector) => `camera ${index} ${connector}`),
        ...connectors.map((connector) => `link ${index} ${connector}`)];
    });
  }

  partTitle(part) {
    const [kind, board, connector] = part.split(" ");
    if (kind === "board") return `board ${board}`;
    return `${kind === "link" ? "cable" : "camera"} at connector ${connector} of board ${board}`;
  }

  cables() {
    const parts = this.parts();
    if (!parts.includes(this.part)) [this.part] = parts;
    const place = this.part?.split(" ").slice(1).join(" ");
    return [element("h3", {}, "Plugs and cables"),
      element("div", { class: "row" }, this.choice("part", "Part", parts, (part) => this.partTitle(part), this.part, (value) => { this.part = value; }),
        button("Unplug", () => this.step(`unplug ${this.part}`), { "data-key": "unplug" }),
        button("Plug in", () => this.step(`plug ${this.part}`), { "data-key": "plug" })),
      this.part?.startsWith("board") ? null : element("div", { class: "row" }, "One image in", this.number("images", "One image in", 0), "is",
        this.choice("damage", "What happens to it", DAMAGES, String, this.typed.damage, (value) => { this.typed.damage = value; }),
        button("Loosen", () => this.step(`loosen ${place} ${this.typed.images} ${this.typed.damage}`), { "data-key": "loosen" }))];
  }

  calls() {
    const entry = element("input", { id: "rehearsed-entry", list: "entries", value: this.typed.entry, class: "grow", "data-key": "entry",
      oninput: (event) => { this.typed.entry = event.target.value; } });
    const { typed } = this;
    return [element("h3", {}, "Calls of the runtime"),
      element("div", { class: "row" }, element("label", { for: "rehearsed-entry" }, "Entry (*: any)"), entry,
        element("datalist", { id: "entries" }, this.entries.map((name) => element("option", { value: name })))),
      element("div", { class: "row" }, "Call", this.number("nth", "Which call from now on", 1), "answers", this.number("code", "Code below 0"),
        this.choice("repeat", "How often", ["once", "always"], String, typed.repeat, (value) => { typed.repeat = value; }),
        button("Make it fail", () => this.step(`fault ${typed.entry} nth ${typed.nth} code ${typed.code} ${typed.repeat}`), { "data-key": "fault" })),
      element("div", { class: "row" }, "Takes", this.number("milliseconds", "Milliseconds longer", 0), "ms longer",
        button("Delay", () => this.step(`delay ${typed.entry} ${typed.milliseconds}`), { "data-key": "delay" }))];
  }

  shortages() {
    const { typed } = this;
    return [element("h3", {}, "Shortages"),
      element("div", { class: "row" }, this.number("threads", "Busy threads", 0), "threads",
        button("Keep busy", () => this.step(`busy ${typed.threads}`), { "data-key": "busy" })),
      element("div", { class: "row" }, this.number("bytes", "Bytes for images", 0), "bytes for images",
        button("Limit", () => this.step(`image-memory ${typed.bytes}`), { "data-key": "limit" })),
      element("div", { class: "row" }, button("Simulate a full disk", () => this.step("disk full"), { "data-key": "disk" }))];
  }

  scenario(lines) {
    const { scenarios } = this;
    if (!scenarios.includes(this.name)) [this.name] = scenarios;
    return [element("h3", {}, "Scenario"),
      element("div", { class: "row" }, this.choice("scenario", "Scenario", scenarios, String, this.name, (value) => { this.name = value; }),
        button("Play", () => this.app.run("play-scenario", { name: this.name }), { disabled: !this.name, "data-key": "play" }),
        button("End", () => this.app.run("stop-scenario"), { "data-key": "end" })),
      element("div", { class: "row" }, element("label", { for: "scenario-file" }, "Play a file from this computer"),
        element("input", { type: "file", accept: ".scenario", id: "scenario-file", "data-key": "file",
          onchange: (event) => this.app.upload(event.target, "upload-scenario") })),
      element("ul", { class: "plain small", "aria-label": "How far the scenario is" }, lines.map((line) => element("li", {}, line)))];
  }

  choice(key, label, values, titleOf, chosen, choose) {
    return element("select", { "aria-label": label, "data-key": key, class: "shrinks", onchange: (event) => {
      choose(event.target.value);
      this.app.renderPanel();
    } }, values.map((value) => element("option", { value, selected: value === chosen }, titleOf(value))));
  }

  number(key, label, min) {
    return element("input", { type: "number", min, value: this.typed[key], "aria-label": label, "data-key": key, class: "short",
      oninput: (event) => { this.typed[key] = event.target.value; } });
  }
}

// Panel "Parameters": of channels and cameras, by group; buffers.
import { button, committed, element, replaceContent } from "./elements.js";

export class ParametersPanel {
  constructor(app) {
    this.app = app;
    this.title = "Parameters";
    this.sections = ["boards", "parameterChanges"];
    this.search = "";
    this.chosen = null; // key of an owner
    this.drafts = new Map(); // what was typed and is not accepted
  }

  opened() {
    this.known = null;
  }

  // Channels and cameras, and boards whose applets have no channels.
  owners() {
    return (this.app.state.get("boards") ?? []).filter((board) => board.applet).flatMap((board) => {
      const channels = board.processes.flatMap((process) => process.channels).map((channel) => (
        { key: `${board.serial}/${channel.index}`, title: channel.title, where: { board: board.serial, dma: channel.index }, board, channel }));
      const cameras = board.processes.flatMap((process) => process.ports).filter((port) => port.camera?.width).map((port) => (
        { key: `${board.serial}/port ${port.index}`, title: `camera of board ${board.index} port ${port.index}: ${port.camera.name}`,
          where: { board: board.serial, port: port.index }, board, port }));
      const itself = { key: board.serial, title: `board ${board.index}`, where: { board: board.serial }, board };
      return [...(channels.length ? channels : [itself]), ...cameras];
    });
  }

  render(root) {
    const owners = this.owners();
    const owner = owners.find((each) => each.key === this.chosen) ?? owners[0];
    // Another applet, another size, a parameter that another page set: the values may be others.
    const state = JSON.stringify([owner?.key, owner?.board.applet, owner?.port?.camera, owner?.channel?.width, owner?.channel?.height, owner?.channel?.buffers,
      this.app.state.get("parameterChanges")[owner?.board.serial]]);
    if (owner && state !== this.known) {
      this.known = state;
      this.read(owner);
    }
    replaceContent(root,
      element("h2", {}, "Parameters"),
      owner ? this.chooser(owners, owner) : element("p", {}, "No board has an applet."),
      owner ? [this.buffers(owner), this.trigger(owner), this.groups(owner)] : null);
  }

  async read(owner) {
    if (owner.key !== this.listed) this.list = null;
    this.listed = owner.key;
    const list = await this.app.run("list-parameters", owner.where);
    if (this.listed !== owner.key) return; // another one was chosen meanwhile
    this.list = list ?? [];
    this.app.renderPanel();
  }

  chooser(owners, owner) {
    return element("div", { class: "row" },
      element("select", {
        "aria-label": "Parameters of", "data-key": "owner",
        onchange: (event) => {
          this.chosen = event.target.value;
          this.app.renderPanel();
        },
      }, owners.map((each) => element("option", { value: each.key, selected: each === owner }, each.title))),
      element("input", {
        type: "search", class: "grow", value: this.search, placeholder: "Search", "aria-label": "Search the parameters", "data-key": "search",
        oninput: (event) => {
          this.search = event.target.value;
          this.app.renderPanel();
        },
      }),
      button("Read again", () => this.read(owner), { "data-key": "read" }));
  }

  groups(owner) {
    if (!this.list) return element("p", { class: "quiet" }, "Reading ...");
    const found = this.list.filter((each) => each.name.toLowerCase().includes(this.search.toLowerCase()));
    const names = [...new Set(found.map((each) => each.group))].sort();
    if (!names.length) return element("p", { class: "quiet" }, this.list.length ? "No parameter matches." : "There are no parameters.");
    return names.map((name) => element("section", { "aria-label": name }, element("h3", {}, name),
      found.filter((each) => each.group === name).map((each) => this.parameter(owner, each))));
  }

  rangeText(parameter) {
    if (!parameter.writable) return "read only";
    if (parameter.choices.length || this.isSwitch(parameter) || parameter.kind === "text" || !(parameter.minimum < parameter.maximum)) return "";
    const step = parameter.kind === "integer" && parameter.step > 1 ? ` in steps of ${parameter.step}` : "";
    return `${parameter.minimum} to ${parameter.maximum}${step}`;
  }

  isSwitch(parameter) {
    return parameter.kind === "integer" && parameter.minimum === 0 && parameter.maximum === 1 && parameter.writable;
  }

  parameter(owner, parameter) {
    const key = `${owner.key} ${parameter.name}`;
    const draft = this.drafts.get(key);
    const id = `parameter-${parameter.name}`;
    const set = (value) => this.set(owner, parameter, key, value);
    const field = parameter.choices.length
      ? element("select", { id, disabled: !parameter.writable, "data-key": key, "aria-describedby": `${id}-about`, onchange: (event) => set(event.target.value) },
        parameter.choices.map((choice) => element("option", { value: choice.value, selected: choice.value === parameter.value }, choice.name)))
      : this.isSwitch(parameter) ? element("input", { type: "checkbox", id, checked: parameter.value === "1", "data-key": key, onchange: (event) => set(event.target.checked ? "1" : "0") })
      : element("input", {
        id, value: draft?.text ?? parameter.value, disabled: !parameter.writable, "data-key": key, class: "grow",
        inputmode: parameter.kind === "text" ? "text" : "decimal", "aria-invalid": draft ? "true" : null, "aria-describedby": `${id}-about`,
        onchange: (event) => set(committed(event.target)),
      });
    return element("div", { class: "parameter" },
      element("label", { for: id }, parameter.name),
      element("div", { class: "row" }, field, element("span", {}, parameter.unit)),
      element("span", { id: `${id}-about`, class: draft ? "error small" : "quiet small" }, draft?.reason ?? this.rangeText(parameter)));
  }

  // A value that is refused stays in its field with the reason.
  async set(owner, parameter, key, value) {
    try {
      this.list = await this.app.connection.request("set-parameter", { ...owner.where, name: parameter.name, value });
      this.drafts.delete(key);
    } catch (error) {
      this.drafts.set(key, { text: value, reason: error.message });
    }
    this.app.renderPanel();
  }

  buffers(owner) {
    const { channel } = owner;
    if (!channel) return null;
    const input = element("input", {
      type: "number", min: 1, value: channel.requestedBuffers, id: "buffers", "data-key": "buffers",
      onchange: (event) => this.app.run("set-buffers", { ...owner.where, count: Number(committed(event.target)) }),
    });
    return element("div", { class: "row" }, element("label", { for: "buffers" }, "Image buffers"), input,
      element("span", { class: "quiet small" }, channel.buffers === channel.requestedBuffers ? ""
        : `${channel.buffers} of ${channel.requestedBuffers}, limited by the DMA memory`));
  }

  trigger(owner) {
    const ports = owner.port ? [owner.port] : owner.board.processes.filter((process) => process.channels.includes(owner.channel))
      .flatMap((process) => process.ports);
    // A camera's own list does not say whether the applet has triggers.
    const triggered = owner.port || this.list?.some((each) => each.group === "Trigger");
    return ports.map((port) => element("div", { class: "row" },
      button(`Trigger port ${port.index}`, () => this.app.run("trigger", { board: owner.board.serial, port: port.index }),
        { disabled: !triggered, title: "Sends a software trigger to the camera", "data-key": `trigger ${port.index}` })));
  }
}

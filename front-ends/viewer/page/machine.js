// Panel "Machine": boards and what is on them, loading and unloading.
import { button, element, replaceContent } from "./elements.js";

const MEBIBYTE = 1024 * 1024;

export class MachinePanel {
  constructor(app) {
    this.app = app;
    this.title = "Machine";
    this.sections = ["boards", "applets", "memory", "load", "rescanning", "splash", "program"];
    this.searches = new Map();
    this.choices = new Map();
  }

  render(root) {
    const { state } = this.app;
    const boards = state.get("boards") ?? [];
    replaceContent(root,
      element("h2", {}, "Machine"),
      this.memory(state.get("memory")),
      this.tools(state.get("rescanning")),
      this.progress(state.get("load")),
      boards.length ? boards.map((board) => this.board(board)) : element("p", {}, "There are no boards."));
  }

  memory(memory) {
    if (!memory) return null;
    const used = (memory.used / MEBIBYTE).toFixed(1);
    const total = (memory.total / MEBIBYTE).toFixed(0);
    return element("div", {},
      element("p", { class: "small" }, `DMA memory: ${used} of ${total} MiB used`),
      element("meter", { min: 0, max: memory.total, value: memory.used, high: memory.total * 0.9, "aria-label": `DMA memory: ${used} of ${total} MiB` }));
  }

  tools(rescanning) {
    return element("div", { class: "row" },
      button(rescanning ? "Looking for boards and applets ..." : "Look again", () => this.app.run("rescan"),
        { disabled: rescanning, "data-key": "rescan" }),
      rescanning && element("span", { class: "quiet small", role: "status" }, this.app.state.get("splash").at(-1) ?? ""));
  }

  progress(load) {
    if (!load || (!load.active && !load.lines.length)) return null;
    return element("details", { class: "card", open: load.active || Boolean(this.lastLoadOpen), role: "status" },
      element("summary", { onclick: (event) => { this.lastLoadOpen = !event.currentTarget.parentElement.open; } },
        `${load.active ? "Loading" : "Last load:"} ${load.applet} (${load.board})`),
      element("ul", { class: "plain small" }, load.lines.map((line) => element("li", { class: line.level }, line.text))));
  }

  board(board) {
    const heading = element("h3", {}, `${board.index} - ${board.model} `, element("span", { class: "quiet small" }, `serial ${board.serial}`));
    return element("section", { class: "card", "aria-label": `Board ${board.index}`, "data-board": board.index },
      heading, board.applet ? this.loaded(board) : this.chooser(board));
  }

  loaded(board) {
    const { active } = this.app.state.get("load");
    return [
      element("div", { class: "row" }, element("strong", { class: "grow" }, board.applet),
        button("Unload", () => this.app.run("unload", { board: board.serial }), { disabled: active, "data-key": `unload ${board.serial}` })),
      board.processes.map((process) => this.process(board, process)),
    ];
  }

  process(board, process) {
    const running = process.channels.some((channel) => channel.grabbing) || process.ports.some((port) => port.camera?.acquiring);
    return element("ul", { class: "plain", "aria-label": `Process ${process.index}` },
      element("li", {}, element("div", { class: "row" }, element("span", { class: "grow quiet small" }, `process ${process.index}: all channels and cameras`),
        process.channels.length || process.ports.length
          ? this.startStop(board, "process", process.index, running, `process ${process.index} of board ${board.index}`) : null)),
      process.channels.map((channel) => element("li", {}, this.channel(board, channel))),
      process.ports.map((port) => element("li", {}, this.port(board, port))));
  }

  startStop(board, kind, index, running, what) {
    const name = running ? "stop" : "start";
    return button(running ? "Stop" : "Start", () => this.app.run(name, { board: board.serial, kind, index }),
      { "aria-label": `${running ? "Stop" : "Start"} ${what}`, "data-key": `${kind} ${board.serial} ${index}` });
  }

  channel(board, channel) {
    return element("div", { class: "row" },
      element("span", { class: "grow" }, `DMA ${channel.index}: ${channel.width} × ${channel.height}, ${channel.buffers} buffers`,
        element("br"), element("span", { class: channel.grabbing ? "good small" : "quiet small" }, channel.grabbing ? "acquires" : channel.ended || "stopped")),
      this.startStop(board, "dma", channel.index, channel.grabbing, channel.title));
  }

  port(board, port) {
    const { camera } = port;
    const connector = port.connector === null ? "no connector" : `connector ${port.connector}`;
    const what = camera ? `${camera.name}${camera.width ? `: ${camera.width} × ${camera.height}` : ""}` : "no camera";
    const state = port.generator ? "the generator is on" : camera?.error ?? (camera?.acquiring ? "sends" : camera ? "does not send" : "");
    return element("div", { class: "row" },
      element("span", { class: "grow" }, `Port ${port.index}${port.type ? ` (${port.type})` : ""}, ${connector}: ${what}`,
        element("br"), element("span", { class: camera?.error ? "error small" : camera?.acquiring ? "good small" : "quiet small" }, state)),
      camera && !port.generator
        ? this.startStop(board, "port", port.index, camera.acquiring, `the camera of board ${board.index} port ${port.index}`) : null);
  }

  chooser(board) {
    const { active } = this.app.state.get("load");
    const search = this.searches.get(board.serial) ?? "";
    const fitting = this.app.state.get("applets").filter((applet) => applet.folder === board.model);
    const found = fitting.filter((applet) => `${applet.name} ${applet.folder} ${applet.type} ${applet.tags.join(" ")}`
      .toLowerCase().includes(search.toLowerCase()));
    return [
      element("p", { class: "quiet small" }, "no applet"),
      element("input", {
        type: "search", class: "grow", value: search, placeholder: "Search by name or tag", "aria-label": `Search the applets for board ${board.index}`,
        "data-key": `search ${board.serial}`,
        oninput: (event) => {
          this.searches.set(board.serial, event.target.value);
          this.app.renderPanel();
        },
      }),
      element("ul", { class: "plain scroll", "data-scroll": `applets ${board.serial}`, "aria-label": `Applets for board ${board.index}` },
        found.map((applet) => element("li", { class: "row" }, this.applet(board, applet, active))),
        found.length ? null : element("li", { class: "quiet" }, fitting.length ? "No applet matches." : "No applet fits this board.")),
    ];
  }

  applet(board, applet, active) {
    const facts = applet.broken ? element("span", { class: "error small" }, `broken: ${applet.broken}`)
      : element("span", { class: "quiet small" }, [applet.type, ...applet.tags].join(", "));
    return [
      element("span", { class: "grow" }, applet.name, element("br"), facts),
      button("Load", () => this.app.run("load", { board: board.serial, applet: applet.path }),
        { disabled: active || Boolean(applet.broken), "aria-label": `Load ${applet.name} onto board ${board.index}`, "data-key": `load ${board.serial} ${applet.path}` }),
    ];
  }
}

// Panel "Configurations": files that keep an applet and its parameters.
import { button, download, element, replaceContent } from "./elements.js";

export class ConfigurationsPanel {
  constructor(app) {
    this.app = app;
    this.title = "Configurations";
    this.sections = ["boards", "load"];
    this.list = [];
  }

  async opened() {
    this.list = (await this.app.run("list-configurations")) ?? [];
    this.app.renderPanel();
  }

  board() {
    const boards = this.app.state.get("boards") ?? [];
    return boards.find((each) => each.serial === this.chosen) ?? boards[0];
  }

  render(root) {
    const boards = this.app.state.get("boards") ?? [];
    const board = this.board();
    replaceContent(root, element("h2", {}, "Configurations"), board ? [this.chooser(boards, board), this.store(board), this.upload(board), this.files(board)]
      : element("p", {}, "There are no boards."));
  }

  chooser(boards, board) {
    return element("div", { class: "row" }, element("label", { for: "configured-board" }, "Board"),
      element("select", {
        id: "configured-board", "data-key": "board",
        onchange: (event) => {
          this.chosen = event.target.value;
          this.app.renderPanel();
        },
      }, boards.map((each) => element("option", { value: each.serial, selected: each === board }, `${each.index} - ${each.model}: ${each.applet ?? "no applet"}`))));
  }

  store(board) {
    return element("div", { class: "row" }, button("Store the board's configuration", async () => {
      const stored = await this.app.run("store-configuration", { board: board.serial });
      if (stored) this.app.say("information", "Stored", stored.name);
      this.opened();
    }, { disabled: !board.applet, "data-key": "store" }));
  }

  upload(board) {
    const { active } = this.app.state.get("load");
    return element("div", { class: "row" }, element("label", { for: "upload" }, "Load a file from this computer"),
      element("input", {
        type: "file", accept: ".mcf", id: "upload", disabled: active, "data-key": "upload",
        onchange: (event) => this.app.upload(event.target, "upload-configuration", { board: board.serial }),
      }));
  }

  files(board) {
    const { active } = this.app.state.get("load");
    return element("ul", { class: "plain", "aria-label": "Configurations" },
      this.list.length ? null : element("li", { class: "quiet" }, "There are no configurations."),
      this.list.map((file) => element("li", { class: "row" },
        element("span", { class: "grow" }, file.name, element("br"), element("span", { class: "quiet small" }, file.origin)),
        button("Load", () => this.app.run("load-configuration", { board: board.serial, ...file }),
          { disabled: active, "aria-label": `Load ${file.name}`, "data-key": `load ${file.origin} ${file.name}` }),
        button("Download", () => this.download(file), { "aria-label": `Download ${file.name}`, "data-key": `get ${file.origin} ${file.name}` }))));
  }

  async download(file) {
    const read = await this.app.run("read-configuration", file);
    if (read) download(read.name, read.text, "text/plain");
  }
}

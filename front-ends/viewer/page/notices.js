// Panel "Notices": what went wrong, events, log, report.
import { button, download, element, replaceContent, timeText } from "./elements.js";

const LEVELS = ["error", "warning", "information", "debug"];

export class NoticesPanel {
  constructor(app) {
    this.app = app;
    this.title = "Notices";
    this.sections = ["notices", "events"];
  }

  render(root) {
    const notices = [...(this.app.state.get("notices") ?? [])].reverse();
    const events = this.app.state.get("events") ?? [];
    replaceContent(root,
      element("h2", {}, "Notices"),
      element("div", { class: "row" },
        button("Download a problem report", () => this.report(), { "data-key": "report" }),
        element("label", { class: "small" }, element("input", { type: "checkbox", checked: Boolean(this.withPaths), "data-key": "paths",
          onchange: (event) => { this.withPaths = event.target.checked; } }), " with user name and whole paths")),
      element("ul", { class: "plain", "aria-label": "Notices" },
        notices.length ? null : element("li", { class: "quiet" }, "Nothing has gone wrong."),
        notices.map((notice) => element("li", { class: "card" },
          element("strong", { class: notice.level }, notice.title), " ", element("span", { class: "quiet small" }, timeText(notice.time)),
          element("div", {}, notice.text)))),
      element("h2", {}, "Events since the start"),
      events.length ? element("table", {}, element("tbody", {}, events.map(({ board, name, count }) => element("tr", {},
        element("th", { scope: "row", class: "small" }, `board ${board}: ${name}`), element("td", {}, count)))))
        : element("p", { class: "quiet" }, "None."));
  }

  async report() {
    const report = await this.app.run("problem-report", { withPaths: Boolean(this.withPaths) });
    if (report) download(report.name, report.text, "text/plain");
  }
}

export class LogPanel {
  constructor(app) {
    this.app = app;
    this.title = "Log";
    this.sections = ["log"];
    this.level = 2;
    this.search = "";
  }

  render(root) {
    const lines = (this.app.state.get("log") ?? []).filter((line) => line.level <= this.level &&
      `${line.text} ${line.place}`.toLowerCase().includes(this.search.toLowerCase()));
    replaceContent(root,
      element("h2", {}, "Log"),
      element("div", { class: "row" },
        element("select", {
          "aria-label": "Lowest level shown", "data-key": "level",
          onchange: (event) => {
            this.level = Number(event.target.value);
            this.app.renderPanel();
          },
        }, LEVELS.map((name, i) => element("option", { value: i, selected: i === this.level }, name))),
        element("input", {
          type: "search", class: "grow", value: this.search, placeholder: "Search", "aria-label": "Search the log", "data-key": "search",
          oninput: (event) => {
            this.search = event.target.value;
            this.app.renderPanel();
          },
        }),
        button("Download", () => download("ovra-viewer-log.txt", lines.map((line) => this.text(line)).join("\n"), "text/plain"), { "data-key": "download" })),
      element("ul", { class: "plain small", "aria-label": "Log" },
        lines.slice(-300).reverse().map((line) => element("li", { class: line.level < 2 ? LEVELS[line.level] : "" }, this.text(line)))));
  }

  text(line) {
    return `${timeText(line.time)} ${LEVELS[line.level] ?? "message"}: ${line.text} (thread ${line.thread}, ${line.place})`;
  }
}

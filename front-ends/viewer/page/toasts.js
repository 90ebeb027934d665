// Notices that come up and go by themselves; the panel "Notices" keeps them.
import { button, element } from "./elements.js";

const SHOWN_FOR = { error: 12000, warning: 8000, information: 4000 };

export class Toasts {
  constructor(app, root) {
    this.root = root;
    this.seen = null;
    app.state.on(["notices"], () => this.refresh(app.state.get("notices")));
  }

  // Not those that were there before this page was.
  refresh(notices) {
    const newest = notices.at(-1)?.id ?? 0;
    if (this.seen !== null) notices.filter((each) => each.id > this.seen).forEach((each) => this.show(each.level, each.title, each.text));
    this.seen = newest;
  }

  show(level, title, text) {
    const toast = element("div", { class: `toast ${level}` },
      element("span", { class: "grow" }, element("strong", {}, `${title}: `), text),
      button("×", () => toast.remove(), { "aria-label": "Dismiss" }));
    this.root.append(toast);
    while (this.root.children.length > 4) this.root.firstChild.remove();
    setTimeout(() => toast.remove(), SHOWN_FOR[level]);
  }
}

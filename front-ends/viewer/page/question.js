// Dialogs: the library's question, and the page's own.
import { button, element, replaceContent } from "./elements.js";

// The question that the library asks, on every page until one of them answers.
export class QuestionDialog {
  constructor(app, dialog) {
    this.app = app;
    this.dialog = dialog;
    this.shown = null;
    app.state.on(["question"], () => this.refresh());
    dialog.addEventListener("cancel", (event) => this.shown !== null && event.preventDefault());
    dialog.addEventListener("close", () => this.stay());
  }

  // A browser may close the dialog on Escape, whatever the page says; the question still waits for its answer.
  stay() {
    const waits = this.shown !== null && this.app.state.get("question")?.id === this.shown;
    if (waits && !this.dialog.open) this.dialog.showModal();
  }

  refresh() {
    const question = this.app.state.get("question");
    if (!question) {
      if (this.shown !== null) this.dialog.close();
      this.shown = null;
      return;
    }
    if (question.id === this.shown) return;
    this.shown = question.id;
    const remember = element("input", { type: "checkbox", id: "remember" });
    const answer = (index) => this.app.run("answer", { question: question.id, button: index, remember: remember.checked });
    replaceContent(this.dialog,
      element("h2", { id: "dialog-title" }, question.title),
      element("p", {}, question.message),
      element("p", {}, element("label", {}, remember, " Remember the answer and do not ask again")),
      element("div", { class: "row" }, question.buttons.map((text, i) => button(text, () => answer(i), { "data-button": i }))));
    if (this.dialog.open) this.dialog.close();
    this.dialog.showModal();
  }
}

// Resolves to true when the user agrees.
export function confirmed(dialog, title, text, agree) {
  return new Promise((resolve) => {
    const end = (answer) => () => {
      dialog.close();
      resolve(answer);
    };
    replaceContent(dialog, element("h2", { id: "dialog-title" }, title), element("p", {}, text),
      element("div", { class: "row" }, button(agree, end(true), { class: "main" }), button("Cancel", end(false))));
    dialog.addEventListener("cancel", () => resolve(false), { once: true });
    dialog.showModal();
  });
}

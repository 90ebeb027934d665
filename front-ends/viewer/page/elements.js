// Makes elements: element("button", {type: "button", onclick: stop, class: "main"}, "Stop").
export function element(name, properties = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
    else if (typeof value === "boolean") made.toggleAttribute(key, value);
    else if (value !== null && value !== undefined) made.setAttribute(key, value);
  }
  made.append(...children.flat(Infinity).filter((child) => child !== null && child !== undefined && child !== false));
  return made;
}

export function button(text, onclick, properties = {}) {
  return element("button", { type: "button", onclick, ...properties }, text);
}

// Replaces what stands in `parent` and keeps the focus on the element with the same data-key.
export function replaceContent(parent, ...children) {
  const focused = parent.contains(document.activeElement) ? document.activeElement : null;
  const key = focused?.dataset.key;
  const caret = focused?.selectionStart;
  const scroll = [...parent.querySelectorAll("[data-scroll]")].map((each) => [each.dataset.scroll, each.scrollTop]);
  parent.replaceChildren(...children.flat(Infinity).filter(Boolean));
  for (const [name, top] of scroll) {
    const list = parent.querySelector(`[data-scroll="${CSS.escape(name)}"]`);
    if (list) list.scrollTop = top;
  }
  const again = key && parent.querySelector(`[data-key="${CSS.escape(key)}"]`);
  if (!again) return;
  again.focus();
  if (Number.isInteger(caret)) again.setSelectionRange?.(caret, caret);
}

export function timeText(milliseconds) {
  return new Date(milliseconds).toLocaleTimeString([], { hour12: false });
}

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

// An element whose text stays the same is not touched: a screen reader would read it again.
export function setText(place, text) {
  if (place.textContent !== text) place.textContent = text;
}

export function button(text, onclick, properties = {}) {
  return element("button", { type: "button", onclick, ...properties }, text);
}

// Replaces what stands in `parent`. The element with the same data-key keeps the focus, and what is being typed.
export function replaceContent(parent, ...children) {
  const focused = parent.contains(document.activeElement) ? document.activeElement : null;
  const key = focused?.dataset.key;
  const caret = focused?.selectionStart;
  const typed = focused?.defaultValue !== undefined && focused.type !== "file" && focused.value !== focused.defaultValue ? focused.value : null;
  const scroll = [...parent.querySelectorAll("[data-scroll]")].map((each) => [each.dataset.scroll, each.scrollTop]);
  parent.replaceChildren(...children.flat(Infinity).filter(Boolean));
  for (const [name, top] of scroll) {
    const list = parent.querySelector(`[data-scroll="${CSS.escape(name)}"]`);
    if (list) list.scrollTop = top;
  }
  const again = key && parent.querySelector(`[data-key="${CSS.escape(key)}"]`);
  if (!again) return;
  again.focus();
  if (typed !== null) again.value = typed;
  if (Number.isInteger(caret)) again.setSelectionRange?.(caret, caret);
}

// What was typed into a field. From now on it is no longer being typed: the field shows what became of it.
export function committed(field) {
  field.defaultValue = field.value;
  return field.value;
}

export function timeText(milliseconds) {
  return new Date(milliseconds).toLocaleTimeString([], { hour12: false });
}

// Hands a file to the browser.
export function download(name, content, type) {
  const link = element("a", { href: URL.createObjectURL(new Blob([content], { type })), download: name });
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}

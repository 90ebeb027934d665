// What this browser remembers of a machine: layout, contrast, the panel that is open.
const PREFIX = "ovra-viewer.choice.";

export function recall(key, otherwise) {
  try {
    const text = localStorage.getItem(PREFIX + key);
    return text === null ? otherwise : JSON.parse(text);
  } catch {
    return otherwise; // what somebody else wrote there
  }
}

export function remember(key, value) {
  try {
    localStorage.setItem(PREFIX + key, JSON.stringify(value));
  } catch {
    // A browser that keeps nothing shows everything nevertheless.
  }
}

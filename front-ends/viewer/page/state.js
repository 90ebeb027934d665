// The state document: whole once, then section by section.
export class State {
  constructor() {
    this.sections = {};
    this.listeners = new Map();
  }

  // Calls `listener` whenever one of the sections changes, and after each welcome.
  on(sections, listener) {
    for (const section of sections) {
      if (!this.listeners.has(section)) this.listeners.set(section, new Set());
      this.listeners.get(section).add(listener);
    }
    return () => sections.forEach((section) => this.listeners.get(section).delete(listener));
  }

  take(message) {
    if (message.type === "welcome") {
      this.clockAhead = Date.now() - message.time;
      this.sections = message.state;
      const all = new Set([...this.listeners.values()].flatMap((each) => [...each]));
      all.forEach((listener) => listener());
    } else if (message.type === "changed") {
      this.sections[message.section] = message.value;
      this.tell(message.section);
    } else if (message.type === "appended") {
      const list = (this.sections[message.section] ?? []).concat(message.values);
      this.sections[message.section] = list.slice(-message.limit);
      this.tell(message.section);
    }
  }

  tell(section) {
    [...(this.listeners.get(section) ?? [])].forEach((listener) => listener());
  }

  // The program's clock, in milliseconds.
  time() {
    return Date.now() - this.clockAhead;
  }

  get(section) {
    return this.sections[section];
  }

  // [{board, process, channel}], in the order of boards.
  channels() {
    return (this.get("boards") ?? []).flatMap((board) =>
      board.processes.flatMap((process) =>
        process.channels.filter((channel) => channel.id !== null).map((channel) => ({ board, process, channel }))));
  }
}

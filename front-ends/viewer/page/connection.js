// The WebSocket: says hello, comes back by itself, answers requests with promises.
const VERSION = 1;
const TOKEN_KEY = "ovra-viewer.token";

function tokenOfAddress() {
  return new URLSearchParams(location.hash.slice(1)).get("token");
}

// Only a token that was accepted: the other pages adopt it.
function tellOtherPages(token) {
  try {
    localStorage.setItem(TOKEN_KEY, token);
  } catch {
    // Where nothing may be stored, each page needs the address of its own.
  }
}

// A reload presents this token, too.
function putIntoAddress(token) {
  const parts = new URLSearchParams(location.hash.slice(1));
  parts.set("token", token);
  history.replaceState(null, "", `#${parts}`);
}

export class Connection {
  // handlers: message(object), image(ArrayBuffer), status(kind, text)
  constructor(handlers) {
    this.handlers = handlers;
    this.token = tokenOfAddress();
    this.requests = new Map();
    this.lastId = 0;
    this.delay = 250;
    this.ended = false;
    // The program was started again and opened a page of its own, which has the new token.
    addEventListener("storage", (event) => {
      if (event.key === TOKEN_KEY && event.newValue) this.adopt(event.newValue);
    });
    for (const sign of ["focus", "click"]) addEventListener(sign, () => this.tryAgain());
    addEventListener("hashchange", () => this.adopt(tokenOfAddress()));
    this.open();
  }

  adopt(token) {
    if (!token || token === this.token) return;
    this.token = token;
    putIntoAddress(token);
    this.refusal = null;
    this.ended = false;
    if (this.socket) this.socket.close();
    else this.open();
  }

  // A page that was refused waits for a person: by itself it would only fill the program's log.
  tryAgain() {
    if (this.refusal && !this.socket) this.open();
  }

  open() {
    clearTimeout(this.timer);
    this.refusal = null;
    const socket = new WebSocket(`ws://${location.host}/socket`);
    socket.binaryType = "arraybuffer";
    this.socket = socket;
    socket.onopen = () => this.sendObject({ type: "hello", version: VERSION, token: this.token ?? "" });
    socket.onmessage = (event) => this.receive(event.data);
    socket.onclose = () => this.closed(socket);
  }

  receive(data) {
    if (typeof data !== "string") return this.handlers.image(data);
    const message = JSON.parse(data);
    if (message.type === "done" || message.type === "failed") return this.settle(message);
    if (message.type === "refused") {
      this.refusal = message.text;
      return;
    }
    if (message.type === "welcome") {
      this.delay = 250;
      tellOtherPages(this.token);
      this.handlers.status("open", "");
    }
    this.handlers.message(message);
  }

  closed(socket) {
    if (socket !== this.socket) return;
    this.socket = null;
    for (const { reject } of this.requests.values()) reject(new Error("The connection to the program was lost."));
    this.requests.clear();
    if (this.refusal) return this.handlers.status("refused", `Refused: ${this.refusal}. A click tries again.`);
    this.handlers.status("away", this.ended ? "The program has ended." : "The program does not answer; trying again ...");
    this.timer = setTimeout(() => this.open(), this.delay);
    this.delay = Math.min(this.delay * 1.5, 2000);
  }

  settle(message) {
    const request = this.requests.get(message.id);
    if (!request) return;
    this.requests.delete(message.id);
    if (message.type === "done") request.resolve(message.result);
    else request.reject(Object.assign(new Error(message.text), { noticed: message.noticed }));
  }

  sendObject(object) {
    if (this.socket?.readyState === WebSocket.OPEN) this.socket.send(JSON.stringify(object));
  }

  request(name, args = {}) {
    return new Promise((resolve, reject) => {
      if (this.socket?.readyState !== WebSocket.OPEN) return reject(new Error("The program does not answer."));
      const id = ++this.lastId;
      this.requests.set(id, { resolve, reject });
      this.sendObject({ type: "request", id, name, arguments: args });
    });
  }
}

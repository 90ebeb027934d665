// The tiles of all channels.
import { element } from "./elements.js";
import { recall, remember } from "./memory.js";
import { keyOf, Tile } from "./tile.js";

export class Tiles {
  constructor(app, root) {
    this.app = app;
    this.root = root;
    this.tiles = new Map();
    this.nothing = element("p", {}, "No board has an applet. Load one in the panel \"Machine\", and its channels appear here.");
    app.state.on(["boards"], () => this.refresh());
    setInterval(() => this.tiles.forEach((tile) => tile.tell()), 500);
  }

  refresh() {
    const entries = new Map(this.app.state.channels().map((entry) => [entry.channel.id, entry]));
    // A program that was started again numbers its channels anew.
    for (const [id, tile] of this.tiles)
      if (!entries.has(id) || keyOf(entries.get(id)) !== tile.key) {
        tile.end();
        this.tiles.delete(id);
        if (this.large === tile) this.show(null);
      }
    for (const [id, entry] of entries) {
      if (this.tiles.has(id)) {
        this.tiles.get(id).update(entry);
      } else {
        const tile = new Tile(this.app, entry);
        this.tiles.set(id, tile);
        if (recall("enlarged", null) === tile.key) this.enlarge(tile);
      }
    }
    this.arrange([...entries.keys()].map((id) => this.tiles.get(id).root));
    if (this.tiles.size) this.nothing.remove();
    else this.root.append(this.nothing);
  }

  // In the order of boards, whichever was loaded first. A tile in its place stays there and keeps the focus.
  arrange(roots) {
    roots.forEach((root, i) => {
      if (this.root.children[i] !== root) this.root.insertBefore(root, this.root.children[i] ?? null);
    });
  }

  // After the connection came back: the program knows nothing of what is shown here.
  askAgain() {
    this.tiles.forEach((tile) => tile.ask());
  }

  enlarge(tile) {
    this.show(this.large === tile ? null : tile);
    remember("enlarged", this.large?.key ?? null);
  }

  show(tile) {
    this.large = tile;
    for (const each of this.tiles.values()) {
      each.root.classList.toggle("large", each === this.large);
      each.largeButton.setAttribute("aria-pressed", each === this.large);
    }
    this.root.classList.toggle("enlarged", Boolean(this.large));
  }

  take(image) {
    const tile = this.tiles.get(image.channel);
    if (tile) tile.take(image);
  }

  takeMessage(message) {
    const tile = this.tiles.get(message.channel);
    if (!tile) return;
    if (message.type === "histogram") tile.takeHistogram(message);
    else tile.takeValues(message);
  }
}

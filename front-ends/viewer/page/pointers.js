// Mouse, fingers and keys over an image: zoom to the pointer, pan, value under the pointer, line.
export class Pointers {
  constructor(tile) {
    this.tile = tile;
    this.down = new Map();
    const { stage } = tile;
    stage.addEventListener("wheel", (event) => this.wheel(event), { passive: false });
    stage.addEventListener("pointerdown", (event) => this.press(event));
    stage.addEventListener("pointermove", (event) => this.move(event));
    for (const end of ["pointerup", "pointercancel"]) stage.addEventListener(end, (event) => this.release(event));
    stage.addEventListener("pointerleave", () => tile.setPixel(null));
    stage.addEventListener("dblclick", () => tile.app.enlarge(tile));
    stage.addEventListener("keydown", (event) => this.key(event));
  }

  point(event) {
    const box = this.tile.stage.getBoundingClientRect();
    const ratio = this.tile.canvas.width / box.width;
    return { x: (event.clientX - box.left) * ratio, y: (event.clientY - box.top) * ratio };
  }

  pixel(point) {
    const at = this.tile.geometry.toImage(point);
    const { width, height } = this.tile.geometry.image;
    const pixel = [Math.floor(at.x), Math.floor(at.y)];
    return pixel[0] >= 0 && pixel[1] >= 0 && pixel[0] < width && pixel[1] < height ? pixel : null;
  }

  wheel(event) {
    event.preventDefault();
    this.tile.geometry.zoomStep(event.deltaY < 0 ? 1 : -1, this.point(event));
    this.tile.changed();
  }

  press(event) {
    this.tile.stage.setPointerCapture(event.pointerId);
    const point = this.point(event);
    this.down.set(event.pointerId, point);
    const pixel = this.pixel(point);
    if (this.tile.lining && pixel) this.tile.setLine([...pixel, ...pixel]);
  }

  move(event) {
    const point = this.point(event);
    this.tile.setPixel(this.pixel(point));
    const before = this.down.get(event.pointerId);
    if (!before) return;
    this.down.set(event.pointerId, point);
    if (this.down.size === 2) return this.pinch(event.pointerId, before, point);
    if (this.tile.lining) {
      const pixel = this.pixel(point);
      if (pixel && this.tile.line) this.tile.setLine([...this.tile.line.slice(0, 2), ...pixel]);
      return;
    }
    this.tile.geometry.panBy(point.x - before.x, point.y - before.y);
    this.tile.changed();
  }

  pinch(id, before, point) {
    const [, other] = [...this.down].find(([each]) => each !== id);
    const distance = (a) => Math.hypot(a.x - other.x, a.y - other.y);
    const middle = { x: (point.x + other.x) / 2, y: (point.y + other.y) / 2 };
    this.pinched = (this.pinched ?? this.tile.geometry.scale) * (distance(point) / Math.max(distance(before), 1));
    this.tile.geometry.zoomTo(this.pinched, middle);
    this.tile.changed();
  }

  release(event) {
    this.down.delete(event.pointerId);
    if (this.down.size < 2) this.pinched = undefined;
  }

  key(event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const { tile } = this;
    const { geometry } = tile;
    const arrows = { ArrowLeft: [1, 0], ArrowRight: [-1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] };
    if (event.key in arrows && event.shiftKey && tile.line) this.moveEnd(arrows[event.key]);
    else if (event.key in arrows && event.shiftKey) this.movePixel(arrows[event.key]);
    else if (event.key in arrows) geometry.panBy(arrows[event.key][0] * 40, arrows[event.key][1] * 40);
    else if (event.key === "+" || event.key === "=") geometry.zoomStep(1);
    else if (event.key === "-") geometry.zoomStep(-1);
    else if (event.key === "0") geometry.fit();
    else if (event.key === "1") geometry.zoomTo(1);
    else if (event.key === "r") geometry.turn();
    else if (event.key === "f") geometry.flip();
    else if (event.key === "a") tile.automatic();
    else if (event.key === "c") tile.setLook({ coloured: !tile.look.coloured });
    else if (event.key === "e") tile.setLook({ marked: !tile.look.marked });
    else if (event.key === "p") this.toggleLine();
    else if (event.key === "s") tile.save();
    else if (event.key === "Enter") tile.app.enlarge(tile);
    else return;
    event.preventDefault();
    tile.changed();
  }

  // The pixel of the pointer, or in the middle.
  from() {
    const { center } = this.tile.geometry;
    return this.tile.pixel ?? this.within(center.x, center.y);
  }

  within(x, y) {
    const { width, height } = this.tile.geometry.image;
    const limited = (value, limit) => Math.min(Math.max(Math.floor(value), 0), limit - 1);
    return [limited(x, width), limited(y, height)];
  }

  movePixel([dx, dy]) {
    const [x, y] = this.from();
    this.tile.setPixel(this.within(x - dx, y - dy));
  }

  // Across the image, for a start.
  toggleLine() {
    const { tile } = this;
    tile.setLining(!tile.lining);
    const [, y] = this.from();
    if (tile.lining) tile.setLine([0, y, tile.geometry.image.width - 1, y]);
  }

  moveEnd([dx, dy]) {
    const { line, geometry } = this.tile;
    const step = Math.max(1, Math.round(8 / geometry.scale));
    this.tile.setLine([...line.slice(0, 2), ...this.within(line[2] - dx * step, line[3] - dy * step)]);
  }
}

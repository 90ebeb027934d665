// Where an image lies on its stage: zoom, pan, quarter turns and a flip, display only.
//
// A screen point s (device pixels from the stage's upper left corner) shows the image point
//   center + T (s - middle of the stage) / scale,   T a turn and perhaps a flip.
const MAX_SCALE = 64;

export class Geometry {
  constructor() {
    this.image = { width: 0, height: 0 };
    this.stage = { width: 1, height: 1 };
    this.center = { x: 0, y: 0 };
    this.scale = 1; // device pixels an image pixel
    this.turns = 0; // quarters, clockwise
    this.flipped = false;
    this.fits = true; // follows the stage's size
  }

  setImage(width, height) {
    if (width === this.image.width && height === this.image.height) return false;
    this.image = { width, height };
    this.fit();
    return true;
  }

  setStage(width, height) {
    this.stage = { width: Math.max(1, width), height: Math.max(1, height) };
    if (this.fits) this.fit();
    else this.settle();
  }

  fitScale() {
    const { width, height } = this.image;
    if (!width || !height) return 1;
    const [across, down] = this.turns % 2 ? [height, width] : [width, height];
    return Math.min(this.stage.width / across, this.stage.height / down);
  }

  fit() {
    this.fits = true;
    this.scale = this.fitScale();
    this.center = { x: this.image.width / 2, y: this.image.height / 2 };
  }

  // Keeps the image point under `at` where it is. Above 1:1 an image pixel is a whole number of screen pixels.
  zoomTo(scale, at = { x: this.stage.width / 2, y: this.stage.height / 2 }) {
    const lowest = Math.min(this.fitScale(), 1);
    let next = Math.min(Math.max(scale, lowest), MAX_SCALE);
    if (next > 1) next = Math.round(next);
    const fixed = this.toImage(at);
    this.scale = next;
    this.fits = next === this.fitScale();
    const moved = this.toImage(at);
    this.center = { x: this.center.x + fixed.x - moved.x, y: this.center.y + fixed.y - moved.y };
    this.settle();
  }

  // One step in or out. From one whole number to the next, so that none is passed over.
  zoomStep(direction, at) {
    const factor = 1.25;
    let next = direction > 0 ? this.scale * factor : this.scale / factor;
    if (direction > 0 && this.scale >= 1) next = Math.max(Math.round(next), Math.round(this.scale) + 1);
    if (direction < 0 && this.scale > 1) next = Math.min(Math.round(next), Math.round(this.scale) - 1);
    this.zoomTo(next, at);
  }

  panBy(dx, dy) {
    const [x, y] = this.turned(dx, dy);
    this.center = { x: this.center.x - x / this.scale, y: this.center.y - y / this.scale };
    this.fits = false;
    this.settle();
  }

  turn() {
    this.turns = (this.turns + 1) % 4;
    if (this.fits) this.fit();
    else this.settle();
  }

  flip() {
    this.flipped = !this.flipped;
    this.settle();
  }

  // Something of the image stays visible. From 1:1 on, its pixels begin and end where those of the screen do.
  settle() {
    const { width, height } = this.image;
    this.center = { x: Math.min(Math.max(this.center.x, 0), width), y: Math.min(Math.max(this.center.y, 0), height) };
    if (this.fits || this.scale < 1) return;
    const origin = this.toScreen({ x: 0, y: 0 });
    const [x, y] = this.turned(Math.round(origin.x) - origin.x, Math.round(origin.y) - origin.y);
    this.center = { x: this.center.x - x / this.scale, y: this.center.y - y / this.scale };
  }

  // A screen vector in the image's directions, without scale.
  turned(dx, dy) {
    const [x, y] = [[dx, dy], [dy, -dx], [-dx, -dy], [-dy, dx]][this.turns];
    return [this.flipped ? -x : x, y];
  }

  toImage(point) {
    const [x, y] = this.turned(point.x - this.stage.width / 2, point.y - this.stage.height / 2);
    return { x: this.center.x + x / this.scale, y: this.center.y + y / this.scale };
  }

  toScreen(point) {
    let x = (point.x - this.center.x) * this.scale;
    const y = (point.y - this.center.y) * this.scale;
    if (this.flipped) x = -x;
    const [dx, dy] = [[x, y], [-y, x], [-x, -y], [y, -x]][this.turns];
    return { x: dx + this.stage.width / 2, y: dy + this.stage.height / 2 };
  }

  // What of the image is visible, and the device pixels that it covers.
  visible() {
    const corners = [{ x: 0, y: 0 }, { x: this.stage.width, y: this.stage.height }].map((each) => this.toImage(each));
    const range = (a, b, limit) => [Math.max(0, Math.floor(Math.min(a, b))), Math.min(limit, Math.ceil(Math.max(a, b)))];
    const [left, right] = range(corners[0].x, corners[1].x, this.image.width);
    const [top, bottom] = range(corners[0].y, corners[1].y, this.image.height);
    const region = [left, top, Math.max(0, right - left), Math.max(0, bottom - top)];
    const screen = [region[2], region[3]].map((length) => Math.min(16384, Math.max(1, Math.ceil(length * this.scale))));
    return { region, screen };
  }

  // [a, b, c, d, e, f]: image x = a sx + c sy + e, image y = b sx + d sy + f.
  matrix() {
    const origin = this.toImage({ x: 0, y: 0 });
    const across = this.toImage({ x: 1, y: 0 });
    const down = this.toImage({ x: 0, y: 1 });
    return [across.x - origin.x, across.y - origin.y, down.x - origin.x, down.y - origin.y, origin.x, origin.y];
  }
}

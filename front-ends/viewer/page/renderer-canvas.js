// Draws an image on a plain canvas, where there is no WebGL2. Looks the same, takes longer.
import { COLOURS, GREY, indexOf, OVEREXPOSED, UNDEREXPOSED } from "./colours.js";

export class CanvasRenderer {
  constructor(canvas) {
    this.canvas = canvas;
    this.context = canvas.getContext("2d");
    this.source = document.createElement("canvas");
  }

  colourTable(image, look) {
    const colours = look.coloured && image.components === 1 ? COLOURS : GREY;
    const entries = new Uint8Array((image.highest + 1) * 3);
    for (let value = 0; value <= image.highest; ++value) {
      const at = indexOf(value, look) * 4;
      entries.set(colours.subarray(at, at + 3), value * 3);
    }
    if (look.marked) {
      entries.set(UNDEREXPOSED, 0);
      entries.set(OVEREXPOSED, image.highest * 3);
    }
    return entries;
  }

  fill(image, look) {
    const entries = this.colourTable(image, look);
    const pixels = new ImageData(image.width, image.height);
    const { samples, components, highest } = image;
    for (let i = 0, count = image.width * image.height; i < count; ++i) {
      for (let part = 0; part < 3; ++part) {
        const value = Math.min(samples[i * components + (components === 3 ? part : 0)], highest);
        pixels.data[i * 4 + part] = entries[value * 3 + part];
      }
      pixels.data[i * 4 + 3] = 255;
    }
    this.source.width = image.width;
    this.source.height = image.height;
    this.source.getContext("2d").putImageData(pixels, 0, 0);
  }

  draw(image, geometry, look) {
    const { context, canvas } = this;
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.clearRect(0, 0, canvas.width, canvas.height);
    if (!image || image.width === 0 || image.height === 0) return;
    this.fill(image, look);
    // The canvas wants screen from image; the geometry gives points of the screen.
    const origin = geometry.toScreen({ x: 0, y: 0 });
    const across = geometry.toScreen({ x: 1, y: 0 });
    const down = geometry.toScreen({ x: 0, y: 1 });
    context.setTransform(across.x - origin.x, across.y - origin.y, down.x - origin.x, down.y - origin.y, origin.x, origin.y);
    context.imageSmoothingEnabled = geometry.scale < 1;
    const { region } = image;
    context.drawImage(this.source, 0, 0, region.width / image.binning, region.height / image.binning,
      region.x, region.y, region.width, region.height);
  }
}

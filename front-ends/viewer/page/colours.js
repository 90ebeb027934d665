// How values become colours: 256 entries of red, green, blue.

function oklabToRgb(lightness, a, b) {
  const l = (lightness + 0.3963377774 * a + 0.2158037573 * b) ** 3;
  const m = (lightness - 0.1055613458 * a - 0.0638541728 * b) ** 3;
  const s = (lightness - 0.0894841775 * a - 1.291485548 * b) ** 3;
  return [
    4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
    -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
    -0.0041960863 * l - 0.7034186147 * m + 1.707614701 * s,
  ];
}

const encoded = (linear) => (linear <= 0.0031308 ? 12.92 * linear : 1.055 * linear ** (1 / 2.4) - 0.055);

// Equal steps of the value are equal steps of lightness to the eye, from a dark violet to a light yellow.
function evenColour(share) {
  const lightness = 0.16 + 0.78 * share;
  const hue = ((290 - 185 * share) * Math.PI) / 180;
  for (let chroma = 0.16; ; chroma -= 0.004) {
    const rgb = oklabToRgb(lightness, chroma * Math.cos(hue), chroma * Math.sin(hue));
    if (chroma <= 0 || rgb.every((each) => each >= 0 && each <= 1))
      return rgb.map((each) => Math.round(255 * encoded(Math.min(Math.max(each, 0), 1))));
  }
}

function table(colourOf) {
  const entries = new Uint8Array(256 * 4);
  for (let i = 0; i < 256; ++i) entries.set([...colourOf(i), 255], i * 4);
  return entries;
}

export const GREY = table((i) => [i, i, i]);
export const COLOURS = table((i) => evenColour(i / 255));
export const UNDEREXPOSED = [40, 90, 255];
export const OVEREXPOSED = [255, 40, 40];

// The index of a value's colour. `look`: low, high, gamma.
export function indexOf(value, look) {
  const share = Math.min(Math.max((value - look.low) / Math.max(look.high - look.low, 1e-9), 0), 1);
  return Math.round(255 * share ** (1 / look.gamma));
}

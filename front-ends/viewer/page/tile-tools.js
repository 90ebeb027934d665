// The row of tools below an image.
import { button, download, element } from "./elements.js";

export function tileTools(tile) {
  const { geometry } = tile;
  const act = (change) => () => {
    change();
    tile.changed();
  };
  const zoom = element("span", { class: "small" });
  const automatic = button("Auto", () => tile.automatic(), { title: "Contrast follows the image (a)" });
  const coloured = button("Colours", () => tile.setLook({ coloured: !tile.look.coloured }), { title: "Colour map (c)" });
  const marked = button("Exposure", () => tile.setLook({ marked: !tile.look.marked }), { title: "Marks under- and overexposed pixels (e)" });
  const lining = button("Profile", () => tile.setLining(!tile.lining), { title: "Drag a line over the image and see the values along it (p)" });
  const keeping = [
    button("Save", () => tile.save(), { title: "Saves the image as it was acquired, as PNG (s)" }),
    button("Save as shown", () => savePicture(tile), { title: "Downloads the picture as it is shown" }),
    button("Copy", () => copyPicture(tile), { title: "Copies the picture as it is shown to the clipboard" }),
  ];
  const gamma = element("input", {
    type: "range", min: "0.2", max: "4", step: "0.1", "aria-label": "Gamma",
    oninput: (event) => tile.setLook({ gamma: Number(event.target.value) }),
  });
  const gammaText = element("span", { class: "small" });
  function update() {
    zoom.textContent = `${Math.round(geometry.scale * 100)} %`;
    gamma.value = tile.look.gamma;
    gammaText.textContent = `γ ${tile.look.gamma.toFixed(1)}`;
    automatic.setAttribute("aria-pressed", tile.look.automatic);
    coloured.setAttribute("aria-pressed", tile.look.coloured);
    marked.setAttribute("aria-pressed", tile.look.marked);
    lining.setAttribute("aria-pressed", Boolean(tile.lining));
    for (const each of keeping) each.disabled = !tile.image;
  }
  const root = element("div", { class: "tools", role: "toolbar", "aria-label": "Image tools" },
    button("−", act(() => geometry.zoomStep(-1)), { "aria-label": "Zoom out" }),
    zoom,
    button("+", act(() => geometry.zoomStep(1)), { "aria-label": "Zoom in" }),
    button("Fit", act(() => geometry.fit()), { title: "Show the whole image (0)" }),
    button("1:1", act(() => geometry.zoomTo(1)), { title: "One image pixel, one screen pixel (1)" }),
    button("Turn", act(() => geometry.turn()), { title: "A quarter turn, display only (r)" }),
    button("Flip", act(() => geometry.flip()), { title: "Left to right, display only (f)" }),
    automatic, coloured, marked, lining,
    element("label", {}, gammaText, gamma), keeping);
  update();
  return { root, update };
}

const picture = (tile) => new Promise((resolve) => tile.canvas.toBlob(resolve, "image/png"));

async function savePicture(tile) {
  const { board, channel } = tile.entry;
  download(`board${board.index}-dma${channel.index}-image${tile.image?.number ?? 0}-as-shown.png`, await picture(tile), "image/png");
}

async function copyPicture(tile) {
  try {
    await navigator.clipboard.write([new ClipboardItem({ "image/png": await picture(tile) })]);
    tile.app.say("information", "Copied", "The picture is in the clipboard, as it is shown.");
  } catch (error) {
    tile.app.say("error", "Not copied", error.message);
  }
}

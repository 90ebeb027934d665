// What lies over the image: the dragged line.
export function drawOverlay(canvas, geometry, line) {
  const context = canvas.getContext("2d");
  context.clearRect(0, 0, canvas.width, canvas.height);
  if (!line) return;
  const from = geometry.toScreen({ x: line[0] + 0.5, y: line[1] + 0.5 });
  const to = geometry.toScreen({ x: line[2] + 0.5, y: line[3] + 0.5 });
  for (const [style, width] of [["#000", 4], ["#ffd54a", 2]]) {
    context.strokeStyle = style;
    context.lineWidth = width;
    context.beginPath();
    context.moveTo(from.x, from.y);
    context.lineTo(to.x, to.y);
    context.stroke();
  }
}

// The values along the line, one curve a component.
export function drawProfile(canvas, samples, highest) {
  canvas.width = canvas.clientWidth || 300;
  canvas.height = canvas.clientHeight || 80;
  const context = canvas.getContext("2d");
  const present = samples.filter((each) => each.length);
  if (!present.length) return;
  const components = present[0].length;
  const colours = components === 1 ? [getComputedStyle(canvas).color] : ["#e5484d", "#30a46c", "#3e8ef7"];
  for (let part = 0; part < components; ++part) {
    context.strokeStyle = colours[part];
    context.beginPath();
    samples.forEach((each, i) => {
      if (!each.length) return;
      const x = (i / Math.max(samples.length - 1, 1)) * (canvas.width - 1);
      context.lineTo(x, (1 - each[part] / highest) * (canvas.height - 2) + 1);
    });
    context.stroke();
  }
}

// What is near a point of the screen.

// Calls see(x1, y1, x2, y2, isPoint) for each segment of a line, in pixels.
function eachSegment(drawing, line, { xx, xy, x, yx, yy, y }, see) {
  const { vertices, lineEnds, lineStyles } = drawing;
  const begin = line === 0 ? 0 : 2 * lineEnds[line - 1];
  const end = 2 * lineEnds[line];
  const first = lineStyles[line] & 1 ? end - 2 : begin;
  let lastX = xx * vertices[first] + xy * vertices[first + 1] + x;
  let lastY = yx * vertices[first] + yy * vertices[first + 1] + y;
  for (let v = begin; v < end; v += 2) {
    const nextX = xx * vertices[v] + xy * vertices[v + 1] + x;
    const nextY = yx * vertices[v] + yy * vertices[v + 1] + y;
    see(lastX, lastY, nextX, nextY);
    lastX = nextX;
    lastY = nextY;
  }
}

function distanceToSegment(x, y, x1, y1, x2, y2) {
  const dx = x2 - x1;
  const dy = y2 - y1;
  const square = dx * dx + dy * dy;
  const share = square > 0 ? Math.min(1, Math.max(0, ((x - x1) * dx + (y - y1) * dy) / square)) : 0;
  return Math.hypot(x - x1 - share * dx, y - y1 - share * dy);
}

// The nearest shown line within `reach` pixels: its placement and layer, and the nearest of its
// vertices with its distance. Null where there is none. `renderer` has drawn the picture that is
// looked at.
function nearestTo(renderer, pixelX, pixelY, reach) {
  const { drawing } = renderer;
  const x = pixelX * renderer.ratio;
  const y = pixelY * renderer.ratio;
  const far = reach * renderer.ratio;
  const isNear = (box) => box[0] <= x + far && box[2] >= x - far && box[1] <= y + far && box[3] >= y - far;
  let line = null;
  let vertex = null;
  let lineDistance = far;
  let vertexDistance = far;
  drawing.placements.forEach((place, number) => {
    const block = drawing.blocks[place.block];
    if (!renderer.isPlacementShown[number] || block.lines[0] === block.lines[1]) {
      return;
    }
    const matrix = renderer.matrixOf(place);
    if (!isNear(renderer.boxOnCanvas(matrix, ...block.box))) {
      return;
    }
    for (let i = block.lines[0]; i < block.lines[1]; i++) {
      const layer = drawing.styles[drawing.lineStyles[i] >>> 1].layer || place.layer;
      if (!renderer.isLayerShown[layer] || !isNear(renderer.boxOnCanvas(matrix, ...drawing.boxes.subarray(4 * i, 4 * i + 4)))) {
        continue;
      }
      eachSegment(drawing, i, matrix, (x1, y1, x2, y2) => {
        const distance = distanceToSegment(x, y, x1, y1, x2, y2);
        if (distance < lineDistance) {
          lineDistance = distance;
          line = { placement: number, layer };
        }
        const apart = Math.hypot(x - x2, y - y2);
        if (apart < vertexDistance) {
          vertexDistance = apart;
          vertex = [x2 / renderer.ratio, y2 / renderer.ratio];
        }
      });
    }
  });
  return line && { ...line, vertex };
}

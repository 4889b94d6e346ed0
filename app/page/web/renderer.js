// Draws the drawing on a canvas, in many strokes: the cost of a path grows faster than its length, and
// one path for everything takes seconds. What is smaller than a pixel is a dot.

// Vertices of a stroke; longer lines are cut.
const LONGEST_STROKE = 500;
// Vertices from which a stroke takes no more lines; a stroke has a cost of its own, too.
const USUAL_STROKE = 100;
// Pixels outside the picture, beyond which coordinates are too coarse for a canvas.
const FAR = 30000;
// Steps on the screen that cannot be told apart, in pixels.
const LEAST_STEP = 0.5;
// The font's size while texts are drawn, scaled to theirs.
const FONT_SIZE = 100;

// The part of a segment in the square of FAR pixels around the origin, or null.
function clipped(x1, y1, x2, y2) {
  let from = 0;
  let to = 1;
  const dx = x2 - x1;
  const dy = y2 - y1;
  for (const [slope, room] of [[-dx, x1 + FAR], [dx, FAR - x1], [-dy, y1 + FAR], [dy, FAR - y1]]) {
    if (slope === 0) {
      if (room < 0) return null;
    } else if (slope < 0) {
      from = Math.max(from, room / slope);
    } else {
      to = Math.min(to, room / slope);
    }
  }
  return from > to ? null : [x1 + from * dx, y1 + from * dy, x1 + to * dx, y1 + to * dy];
}

class Renderer {
  constructor(drawing) {
    this.drawing = drawing;
    this.textWidths = new Map();
    // Whether each placement, layer is shown.
    this.isPlacementShown = new Uint8Array(drawing.placements.length).fill(1);
    this.isLayerShown = new Uint8Array(drawing.layers.length).fill(1);
  }

  // Draws what `camera` sees, `ratio` pixels of the canvas for one of its own. With `only`, a set of
  // placements, those alone and in the color of marks.
  draw(context, camera, scheme, ratio, only = null) {
    this.context = context;
    this.width = camera.width * ratio;
    this.height = camera.height * ratio;
    this.ratio = ratio;
    this.scale = camera.scale * ratio;
    this.camera = camera;
    this.dots = null;
    this.makeColors(scheme);
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.lineJoin = 'round';
    context.lineCap = 'round';
    this.mark = only ? scheme.mark : null;
    // What the canvas has now; asking it takes longer.
    this.color = '';
    this.lineWidth = 0;
    this.dash = -1;
    this.style = -1;
    // Vertices that wait for their stroke.
    this.waiting = 0;
    const { placements } = this.drawing;
    for (let p = 0; p < placements.length; p++) {
      if (this.isPlacementShown[p] && (!only || only.has(p))) {
        this.drawPlacement(placements[p]);
      }
    }
    context.setLineDash([]);
    this.showDots();
  }

  makeColors(scheme) {
    const { layers, styles } = this.drawing;
    this.layerColors = layers.map((layer) => colorOn(scheme, layer.color));
    this.styleColors = styles.map((style) => (style.color === null ? null : colorOn(scheme, style.color)));
  }

  // What stands so is turned, scaled and moved in one step: from steps of the block to pixels.
  matrixOf(place) {
    const block = this.drawing.blocks[place.block];
    const { scale, camera } = this;
    const step = block.step * scale;
    return {
      xx: place.cos * step,
      xy: -place.sin * step,
      x: (place.cos * block.x - place.sin * block.y + place.x - camera.x) * scale + this.width / 2,
      yx: -place.sin * step,
      yy: -place.cos * step,
      y: this.height / 2 - (place.sin * block.x + place.cos * block.y + place.y - camera.y) * scale,
    };
  }

  // In pixels: least and largest x and y of a box given in steps.
  boxOnCanvas(matrix, lowX, lowY, highX, highY) {
    const { xx, xy, yx, yy } = matrix;
    return [
      matrix.x + Math.min(xx * lowX, xx * highX) + Math.min(xy * lowY, xy * highY),
      matrix.y + Math.min(yx * lowX, yx * highX) + Math.min(yy * lowY, yy * highY),
      matrix.x + Math.max(xx * lowX, xx * highX) + Math.max(xy * lowY, xy * highY),
      matrix.y + Math.max(yx * lowX, yx * highX) + Math.max(yy * lowY, yy * highY),
    ];
  }

  isOutside(box, margin) {
    return box[2] < -margin || box[3] < -margin || box[0] > this.width + margin || box[1] > this.height + margin;
  }

  drawPlacement(place) {
    const block = this.drawing.blocks[place.block];
    if (block.lines[1] > block.lines[0]) {
      const matrix = this.matrixOf(place);
      const box = this.boxOnCanvas(matrix, ...block.box);
      if (!this.isOutside(box, 4)) {
        this.drawLines(block, place, matrix);
      }
    }
    for (let i = block.circles[0]; i < block.circles[1]; i++) {
      this.drawCircle(i, place);
    }
    for (let i = block.texts[0]; i < block.texts[1]; i++) {
      this.drawText(i, place);
    }
  }

  // Returns whether the layer of what has this style is shown.
  useStyle(style, place) {
    const layer = this.drawing.styles[style].layer || place.layer;
    if (!this.isLayerShown[layer]) {
      return false;
    }
    if (style !== this.style || layer !== this.layer) {
      this.setStyle(style, layer);
    }
    return true;
  }

  // Draws the lines that wait.
  stroke() {
    if (this.waiting > 0) {
      this.context.stroke();
      this.waiting = 0;
    }
  }

  setStyle(style, layer) {
    this.stroke();
    this.style = style;
    this.layer = layer;
    const { context, drawing } = this;
    const own = drawing.styles[style];
    const color = this.mark || this.styleColors[style] || this.layerColors[layer];
    if (color !== this.color) {
      this.color = color;
      context.strokeStyle = color;
      context.fillStyle = color;
    }
    const weight = own.weight === null ? drawing.layers[layer].weight : own.weight;
    // In hundredths of a millimeter; 25 is usual.
    const wide = weight > 0 ? Math.min(Math.max(weight / 25, 0.7), 3) : 1;
    const lineWidth = (this.mark ? 3 : wide) * (this.ratio > 1 ? this.ratio * 0.75 : 1);
    if (lineWidth !== this.lineWidth) {
      this.lineWidth = lineWidth;
      context.lineWidth = lineWidth;
    }
    const length = drawing.dashLength * this.scale;
    const isDashed = own.dashed === null ? drawing.layers[layer].dashed : own.dashed;
    // Shorter dashes cannot be told from a line.
    const dash = isDashed && length > 2 ? length : 0;
    if (dash !== this.dash) {
      this.dash = dash;
      context.setLineDash(dash > 0 ? [dash, dash / 2] : []);
    }
  }

  drawLines(block, place, matrix) {
    const { boxes, lineStyles } = this.drawing;
    for (let line = block.lines[0]; line < block.lines[1]; line++) {
      if (!this.useStyle(lineStyles[line] >>> 1, place)) {
        continue;
      }
      const at = 4 * line;
      const box = this.boxOnCanvas(matrix, boxes[at], boxes[at + 1], boxes[at + 2], boxes[at + 3]);
      if (this.isOutside(box, 4)) {
        continue;
      }
      if (box[2] - box[0] < 1 && box[3] - box[1] < 1) {
        this.drawDot((box[0] + box[2]) / 2, (box[1] + box[3]) / 2);
      } else if (box[0] < -FAR || box[1] < -FAR || box[2] > FAR || box[3] > FAR) {
        this.stroke();
        this.drawFarLine(line, matrix);
      } else {
        this.drawLine(line, matrix);
      }
    }
    this.stroke();
  }

  // Dots are collected in a picture of their own.
  drawDot(x, y) {
    const column = Math.floor(x);
    const row = Math.floor(y);
    if (column < 0 || row < 0 || column >= this.width || row >= this.height) {
      return;
    }
    if (this.mark) {
      this.context.fillRect(column - 1, row - 1, 3, 3);
      return;
    }
    if (!this.dots) {
      this.dots = new ImageData(Math.ceil(this.width), Math.ceil(this.height));
      this.dotPixels = new Uint32Array(this.dots.data.buffer);
    }
    if (this.dotColor !== this.color) {
      this.dotColor = this.color;
      const rgb = parseInt(this.color.slice(1), 16);
      // The bytes of a pixel are red, green, blue and opacity.
      this.dotPixel = (0xff000000 | ((rgb & 255) << 16) | (rgb & 0xff00) | (rgb >> 16)) >>> 0;
    }
    this.dotPixels[row * this.dots.width + column] = this.dotPixel;
  }

  showDots() {
    if (this.dots) {
      const canvas = new OffscreenCanvas(this.dots.width, this.dots.height);
      canvas.getContext('2d').putImageData(this.dots, 0, 0);
      this.context.drawImage(canvas, 0, 0);
      this.dots = null;
    }
  }

  drawLine(line, { xx, xy, x, yx, yy, y }) {
    const { context } = this;
    const { vertices, lineEnds, lineStyles } = this.drawing;
    const begin = line === 0 ? 0 : 2 * lineEnds[line - 1];
    const end = 2 * lineEnds[line];
    const isClosed = lineStyles[line] & 1;
    let lastX = xx * vertices[begin] + xy * vertices[begin + 1] + x;
    let lastY = yx * vertices[begin] + yy * vertices[begin + 1] + y;
    let isCut = false;
    if (this.waiting === 0) {
      context.beginPath();
    }
    context.moveTo(lastX, lastY);
    this.waiting++;
    for (let v = begin + 2; v < end; v += 2) {
      const nextX = xx * vertices[v] + xy * vertices[v + 1] + x;
      const nextY = yx * vertices[v] + yy * vertices[v + 1] + y;
      const isLast = v + 2 === end;
      if (!isLast && Math.abs(nextX - lastX) < LEAST_STEP && Math.abs(nextY - lastY) < LEAST_STEP) {
        continue;
      }
      if (this.waiting >= LONGEST_STROKE) {
        this.stroke();
        context.beginPath();
        context.moveTo(lastX, lastY);
        isCut = true;
      }
      context.lineTo(nextX, nextY);
      lastX = nextX;
      lastY = nextY;
      this.waiting++;
    }
    if (isClosed && !isCut) {
      context.closePath();
    } else if (isClosed) {
      context.lineTo(xx * vertices[begin] + xy * vertices[begin + 1] + x,
        yx * vertices[begin] + yy * vertices[begin + 1] + y);
    }
    if (this.waiting >= USUAL_STROKE) {
      this.stroke();
    }
  }

  // Of a line that reaches far outside, the segments that do not.
  drawFarLine(line, { xx, xy, x, yx, yy, y }) {
    const { context } = this;
    const { vertices, lineEnds, lineStyles } = this.drawing;
    const begin = line === 0 ? 0 : 2 * lineEnds[line - 1];
    const end = 2 * lineEnds[line];
    const put = (v) => [xx * vertices[v] + xy * vertices[v + 1] + x, yx * vertices[v] + yy * vertices[v + 1] + y];
    let last = put(lineStyles[line] & 1 ? end - 2 : begin);
    for (let v = begin; v < end; v += 2) {
      const next = put(v);
      const part = clipped(...last, ...next);
      last = next;
      if (part && !this.isOutside([Math.min(part[0], part[2]), Math.min(part[1], part[3]),
        Math.max(part[0], part[2]), Math.max(part[1], part[3])], 4)) {
        context.beginPath();
        context.moveTo(part[0], part[1]);
        context.lineTo(part[2], part[3]);
        context.stroke();
      }
    }
  }

  // A point of a placement in pixels.
  pointOnCanvas(place, x, y) {
    const { scale, camera } = this;
    return [
      (place.cos * x - place.sin * y + place.x - camera.x) * scale + this.width / 2,
      this.height / 2 - (place.sin * x + place.cos * y + place.y - camera.y) * scale,
    ];
  }

  drawCircle(number, place) {
    const { circles, circleStyles } = this.drawing;
    const radius = circles[3 * number + 2] * this.scale;
    const [x, y] = this.pointOnCanvas(place, circles[3 * number], circles[3 * number + 1]);
    const box = [x - radius, y - radius, x + radius, y + radius];
    // Browsers cannot draw much larger ones.
    const largest = 1e7;
    if (!this.useStyle(circleStyles[number], place) || this.isOutside(box, 4) || radius > largest) {
      return;
    }
    if (radius < 0.5) {
      this.drawDot(x, y);
      return;
    }
    this.context.beginPath();
    this.context.arc(x, y, radius, 0, 2 * Math.PI);
    this.context.stroke();
  }

  // Of a text at FONT_SIZE: its width, and how far letters reach below the line and capitals above it.
  measureText(number) {
    let size = this.textWidths.get(number);
    if (!size) {
      this.context.font = `${FONT_SIZE}px sans-serif`;
      const capital = this.context.measureText('H').actualBoundingBoxAscent || 0.7 * FONT_SIZE;
      const measured = this.context.measureText(this.drawing.textList[number]);
      size = { width: measured.width, capital, descent: measured.fontBoundingBoxDescent || 0.2 * FONT_SIZE };
      this.textWidths.set(number, size);
    }
    return size;
  }

  drawText(number, place) {
    const { texts, textStyles, textAnchors, textList } = this.drawing;
    const [atX, atY, height, wide, rotation] = texts.subarray(5 * number, 5 * number + 5);
    const capital = height * this.scale;
    const [x, y] = this.pointOnCanvas(place, atX, atY);
    const reach = capital * (wide * textList[number].length + 2);
    // Letters that nobody can read are left out, and those that are larger than the window are not
    // letters any more.
    if (capital < 1.5 || capital > 20 * this.height || !this.useStyle(textStyles[number], place) ||
        this.isOutside([x - reach, y - reach, x + reach, y + reach], 0)) {
      return;
    }
    const { context } = this;
    const size = this.measureText(number);
    const factor = capital / size.capital;
    const angle = (rotation * Math.PI) / 180;
    const cos = place.cos * Math.cos(angle) - place.sin * Math.sin(angle);
    const sin = place.sin * Math.cos(angle) + place.cos * Math.sin(angle);
    const across = textAnchors[number] & 3;
    const up = textAnchors[number] >> 2;
    context.setTransform(cos * factor * wide, -sin * factor * wide, sin * factor, cos * factor, x, y);
    context.font = `${FONT_SIZE}px sans-serif`;
    context.fillText(textList[number], (-across * size.width) / 2,
      [0, -size.descent, size.capital / 2, size.capital][up]);
    context.setTransform(1, 0, 0, 1, 0, 0);
  }
}

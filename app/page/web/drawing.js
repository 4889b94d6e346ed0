// The drawing that stands in the page: what it says of itself as JSON, numbers as arrays in base64.

const NO_NAME = 0xffffffff;

function decodeBase64(text) {
  if (Uint8Array.fromBase64) {
    return Uint8Array.fromBase64(text);
  }
  const binary = atob(text);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < bytes.length; i++) {
    bytes[i] = binary.charCodeAt(i);
  }
  return bytes;
}

// The arrays in the order in which they are written.
function readNumbers(said, bytes) {
  let offset = 0;
  const take = (Type, count) => {
    const numbers = new Type(bytes.buffer, bytes.byteOffset + offset, count);
    offset += numbers.byteLength;
    return numbers;
  };
  return {
    frames: take(Float64Array, 5 * said.blocks),
    circles: take(Float64Array, 3 * said.circles),
    texts: take(Float64Array, 5 * said.texts.length),
    inserts: take(Float64Array, 3 * said.inserts),
    vertices: take(Uint32Array, 2 * said.vertices),
    lineEnds: take(Uint32Array, said.lines),
    lineStyles: take(Uint32Array, said.lines),
    circleStyles: take(Uint32Array, said.circles),
    textStyles: take(Uint32Array, said.texts.length),
    textAnchors: take(Uint32Array, said.texts.length),
    insertBlocks: take(Uint32Array, said.inserts),
    insertLayers: take(Uint32Array, said.inserts),
    insertNames: take(Uint32Array, said.inserts),
    blockNames: take(Uint32Array, said.blocks),
    blockEnds: take(Uint32Array, 4 * said.blocks),
  };
}

// The ranges of a block's content in the lists of all blocks.
function blockRanges(numbers, count) {
  const blocks = [];
  for (let b = 0; b < count; b++) {
    const from = (kind) => (b === 0 ? 0 : numbers.blockEnds[4 * (b - 1) + kind]);
    const to = (kind) => numbers.blockEnds[4 * b + kind];
    const [x, y, step, baseX, baseY] = numbers.frames.subarray(5 * b, 5 * b + 5);
    blocks.push({
      x, y, step, baseX, baseY, name: numbers.blockNames[b],
      lines: [from(0), to(0)], circles: [from(1), to(1)], texts: [from(2), to(2)],
      inserts: [from(3), to(3)],
      // Of its lines, in steps; empty where there are none.
      box: [Infinity, Infinity, -Infinity, -Infinity],
    });
  }
  return blocks;
}

// Least and largest x and y of every line, in steps, and of the lines of every block.
function lineBoxes(numbers, blocks) {
  const boxes = new Uint32Array(4 * numbers.lineEnds.length);
  const { vertices, lineEnds } = numbers;
  for (const block of blocks) {
    for (let line = block.lines[0]; line < block.lines[1]; line++) {
      let lowX = Infinity;
      let lowY = Infinity;
      let highX = -Infinity;
      let highY = -Infinity;
      const end = 2 * lineEnds[line];
      for (let v = line === 0 ? 0 : 2 * lineEnds[line - 1]; v < end; v += 2) {
        const x = vertices[v];
        const y = vertices[v + 1];
        if (x < lowX) lowX = x;
        if (x > highX) highX = x;
        if (y < lowY) lowY = y;
        if (y > highY) highY = y;
      }
      const at = 4 * line;
      boxes[at] = lowX;
      boxes[at + 1] = lowY;
      boxes[at + 2] = highX;
      boxes[at + 3] = highY;
      const box = block.box;
      if (lowX < box[0]) box[0] = lowX;
      if (lowY < box[1]) box[1] = lowY;
      if (highX > box[2]) box[2] = highX;
      if (highY > box[3]) box[3] = highY;
    }
  }
  return boxes;
}

// What is inserted is a part of the object that inserts it, if that is one, and goes by the name of
// its block otherwise.
function nameOf(name, place, block) {
  if (name !== NO_NAME) {
    return { name, isObject: true };
  }
  return place.isObject ? { name: place.name, isObject: true } : { name: block.name, isObject: false };
}

// Where everything stands: a placement for the drawing itself and for each time that a block is
// inserted, each after the one that it is in. Turned by (cos, sin), then moved to (x, y).
function placeBlocks(numbers, blocks) {
  const placements = [];
  const open = [{ block: 0, cos: 1, sin: 0, x: 0, y: 0, layer: 0, parent: -1, name: blocks[0].name, isObject: false }];
  while (open.length > 0) {
    const place = open.pop();
    const number = placements.push(place) - 1;
    const block = blocks[place.block];
    for (let i = block.inserts[1] - 1; i >= block.inserts[0]; i--) {
      const inserted = blocks[numbers.insertBlocks[i]];
      const angle = (numbers.inserts[3 * i + 2] * Math.PI) / 180;
      const cos = place.cos * Math.cos(angle) - place.sin * Math.sin(angle);
      const sin = place.sin * Math.cos(angle) + place.cos * Math.sin(angle);
      const atX = numbers.inserts[3 * i];
      const atY = numbers.inserts[3 * i + 1];
      open.push({
        block: numbers.insertBlocks[i],
        cos,
        sin,
        x: place.cos * atX - place.sin * atY + place.x - (cos * inserted.baseX - sin * inserted.baseY),
        y: place.sin * atX + place.cos * atY + place.y - (sin * inserted.baseX + cos * inserted.baseY),
        // What stands on layer 0 of a block is on that of the INSERT.
        layer: numbers.insertLayers[i] || place.layer,
        parent: number,
        ...nameOf(numbers.insertNames[i], place, inserted),
      });
    }
  }
  return placements;
}

function readDrawing() {
  const said = JSON.parse(document.getElementById('drawing').textContent);
  const holder = document.getElementById('numbers');
  const numbers = readNumbers(said, decodeBase64(holder.textContent));
  // A second copy in the document is of no use.
  holder.remove();
  const blocks = blockRanges(numbers, said.blocks);
  const boxes = lineBoxes(numbers, blocks);
  return { ...said, ...numbers, blocks, boxes, placements: placeBlocks(numbers, blocks), textList: said.texts };
}

// Calls see(x, y) with corners around all that a placement holds itself.
function eachCorner(drawing, place, see) {
  const block = drawing.blocks[place.block];
  const put = (x, y) => see(place.cos * x - place.sin * y + place.x, place.sin * x + place.cos * y + place.y);
  if (block.lines[1] > block.lines[0]) {
    for (const x of [block.box[0], block.box[2]]) {
      for (const y of [block.box[1], block.box[3]]) {
        put(block.x + x * block.step, block.y + y * block.step);
      }
    }
  }
  for (let i = block.circles[0]; i < block.circles[1]; i++) {
    const [x, y, r] = drawing.circles.subarray(3 * i, 3 * i + 3);
    put(x - r, y - r);
    put(x + r, y + r);
  }
  for (let i = block.texts[0]; i < block.texts[1]; i++) {
    put(drawing.texts[5 * i], drawing.texts[5 * i + 1]);
  }
}

// Writes scenes as importers hand them over: binary glTF 2.0 (see docs/importers.md).
'use strict';

// Numbers of the format: glTF 2.0, sections 3.6.2.2, 3.7.2.1 and 4.4.
const FLOAT = 5126;
const UNSIGNED_INT = 5125;
const TRIANGLES = 4;
const JSON_CHUNK = 0x4e4f534a;
const BINARY_CHUNK = 0x004e4942;
const LARGEST_FILE = 2 ** 32 - 1;

// The arrays of a scene, one after the other. All hold four-byte numbers, so that each begins where
// the format wants it.
class Arrays {
  accessors = [];
  bufferViews = [];
  chunks = [];
  size = 0;

  addPoints(points) {
    const min = [Infinity, Infinity, Infinity];
    const max = [-Infinity, -Infinity, -Infinity];
    for (let i = 0; i < points.length; ++i) {
      min[i % 3] = Math.min(min[i % 3], points[i]);
      max[i % 3] = Math.max(max[i % 3], points[i]);
    }
    return this.add(points, { componentType: FLOAT, count: points.length / 3, type: 'VEC3', min, max });
  }

  addIndices(indices) {
    return this.add(indices, { componentType: UNSIGNED_INT, count: indices.length, type: 'SCALAR' });
  }

  add(array, accessor) {
    const bytes = Buffer.from(array.buffer, array.byteOffset, array.byteLength);
    this.bufferViews.push({ buffer: 0, byteOffset: this.size, byteLength: bytes.length });
    this.accessors.push({ bufferView: this.bufferViews.length - 1, ...accessor });
    this.chunks.push(bytes);
    this.size += bytes.length;
    return this.accessors.length - 1;
  }
}

// Each color, red, green and blue from 0 to 1, once.
class Materials {
  list = [];
  numbers = new Map();

  numberOf(color) {
    const key = color.join();
    if (!this.numbers.has(key)) {
      this.numbers.set(key, this.list.length);
      this.list.push({ pbrMetallicRoughness: { baseColorFactor: [...color, 1], metallicFactor: 0 } });
    }
    return this.numbers.get(key);
  }
}

function chunk(type, bytes) {
  const header = Buffer.alloc(8);
  header.writeUInt32LE(bytes, 0);
  header.writeUInt32LE(type, 4);
  return header;
}

// The file as a list of buffers. `scene`: {generator, extras, nodes, roots, meshes}; nodes as glTF has
// them; a mesh is a list of {points: Float32Array, triangles: Uint32Array, color or null}. Throws an
// Error for more than the 4 GiB that the format can hold.
function glbOf(scene) {
  const arrays = new Arrays();
  const materials = new Materials();
  const meshes = scene.meshes.map((surfaces) => ({
    primitives: surfaces.map(({ points, triangles, color }) => ({
      attributes: { POSITION: arrays.addPoints(points) },
      indices: arrays.addIndices(triangles),
      mode: TRIANGLES,
      ...(color && { material: materials.numberOf(color) }),
    })),
  }));
  const document = {
    asset: { version: '2.0', generator: scene.generator, extras: scene.extras },
    scene: 0,
    scenes: [{ nodes: scene.roots }],
    nodes: scene.nodes,
    meshes,
    ...(materials.list.length !== 0 && { materials: materials.list }),
    accessors: arrays.accessors,
    bufferViews: arrays.bufferViews,
    buffers: [{ byteLength: arrays.size }],
  };
  let json = Buffer.from(JSON.stringify(document));
  json = Buffer.concat([json, Buffer.alloc((4 - (json.length % 4)) % 4, ' ')]);
  const size = 12 + 8 + json.length + 8 + arrays.size;
  if (size > LARGEST_FILE) {
    throw new Error('its triangles take more than the 4 GiB that binary glTF can hold');
  }
  const header = Buffer.from('glTF\x02\0\0\0\0\0\0\0', 'latin1');
  header.writeUInt32LE(size, 8);
  return [header, chunk(JSON_CHUNK, json.length), json, chunk(BINARY_CHUNK, arrays.size), ...arrays.chunks];
}

module.exports = { glbOf };

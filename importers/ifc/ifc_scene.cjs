// IFC models as scenes: the spatial structure as groups, products as nodes.
'use strict';

const { IDENTITY, apply, inverse, product, translation } = require('./matrix.cjs');

// Up is y in web-ifc, and z in IFC.
const FROM_WEB_IFC = [1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1];

// Coordinates beyond this, in meters, are less exact than 0.1 mm in single precision.
const FAR = 1000;

// Thrown for a file that cannot be read; the message is a reason without a period.
class ReadError extends Error {}

// The lines of a model, as web-ifc gives them.
class Lines {
  constructor(api, web, model) {
    this.api = api;
    this.web = web;
    this.model = model;
  }

  ofType(name) {
    const ids = this.api.GetLineIDsWithType(this.model, this.web[name]);
    return [...Array(ids.size()).keys()].map((i) => this.get(ids.get(i))).filter(Boolean);
  }

  get(id) {
    try {
      return this.api.GetLine(this.model, id);
    } catch {
      return null;
    }
  }

  className(line) {
    return this.api.GetNameFromTypeCode(line.type);
  }
}

function nameOf(line) {
  const name = line?.Name?.value;
  return typeof name === 'string' ? name.trim() : '';
}

// The name of a space is its number; its long name is what people call it.
function nameOfProduct(line) {
  const name = nameOf(line);
  const longName = line?.LongName?.value;
  return typeof longName === 'string' && longName.trim() !== '' ? longName.trim() : name;
}

const idsOf = (references) => (references ?? []).map((reference) => reference?.value).filter(Number.isInteger);

// By product or spatial element, what it is in; and the type of each product.
function relationsOf(lines) {
  const parents = new Map();
  const types = new Map();
  for (const relation of lines.ofType('IFCRELAGGREGATES')) {
    idsOf(relation.RelatedObjects).forEach((id) => parents.set(id, relation.RelatingObject?.value));
  }
  for (const relation of lines.ofType('IFCRELCONTAINEDINSPATIALSTRUCTURE')) {
    idsOf(relation.RelatedElements).forEach((id) => parents.set(id, relation.RelatingStructure?.value));
  }
  for (const relation of lines.ofType('IFCRELDEFINESBYTYPE')) {
    idsOf(relation.RelatedObjects).forEach((id) => types.set(id, relation.RelatingType?.value));
  }
  return { parents, types };
}

// Builds the nodes: z is up, and one unit is a meter, as web-ifc has it.
class SceneBuilder {
  constructor(api, web, model) {
    this.api = api;
    this.web = web;
    this.model = model;
    this.lines = new Lines(api, web, model);
    this.relations = relationsOf(this.lines);
    this.nodes = [];
    this.roots = [];
    this.meshes = [];
    this.groups = new Map(); // by id: {node, world}
    this.typeGroups = new Map(); // by parent's node and type
    this.meshNumbers = new Map();
    this.geometries = new Map();
    this.origin = null;
    this.lost = 0;
  }

  // web-ifc streams spaces only where they are asked for.
  run(hasSpaces) {
    this.api.StreamAllMeshes(this.model, (mesh) => this.addProduct(mesh));
    if (hasSpaces) {
      this.api.StreamAllMeshesWithTypes(this.model, [this.web.IFCSPACE], (mesh) => this.addProduct(mesh));
    }
    if (this.meshes.length === 0) {
      throw new ReadError('it has no bodies');
    }
    const notes = this.lost === 0 ? [] : [`${this.lost} ${this.lost === 1 ? 'body' : 'bodies'} without triangles left out`];
    const extras = { unit: 'm', up: 'z', origin: this.origin, ...(notes.length !== 0 && { notes }) };
    return { nodes: this.nodes, roots: this.roots, meshes: this.meshes, extras };
  }

  addNode(name, parent) {
    const number = this.nodes.push({ ...(name && { name }) }) - 1;
    if (parent === null) {
      this.roots.push(number);
    } else {
      (this.nodes[parent].children ??= []).push(number);
    }
    return number;
  }

  // The group of a spatial element or an assembly, and of all that it is in.
  groupOf(id) {
    if (!this.groups.has(id)) {
      this.groups.set(id, { node: null, world: IDENTITY }); // ends a circle
      const line = this.lines.get(id);
      const above = this.relations.parents.has(id) ? this.groupOf(this.relations.parents.get(id)) : null;
      this.groups.set(id, line === null ? { node: null, world: IDENTITY } : this.newGroup(line, above));
    }
    return this.groups.get(id);
  }

  newGroup(line, above) {
    const isStorey = this.lines.className(line).toUpperCase() === 'IFCBUILDINGSTOREY';
    const name = nameOf(line);
    const node = this.addNode(isStorey ? `IfcBuildingStorey_${name}` : name, above?.node ?? null);
    let world = above?.world ?? IDENTITY;
    if (isStorey) {
      const floor = this.floorOf(line) - (this.origin?.[2] ?? 0);
      this.nodes[node].matrix = product(inverse(world), translation(0, 0, floor));
      world = translation(0, 0, floor);
    }
    return { node, world };
  }

  // The height of a storey's floor in meters: the sum of the placements above it.
  floorOf(storey) {
    let height = 0;
    let placement = this.lines.get(storey.ObjectPlacement?.value);
    for (let level = 0; placement !== null && placement !== undefined && level < 64; ++level) {
      const relative = this.lines.get(placement.RelativePlacement?.value);
      const location = this.lines.get(relative?.Location?.value);
      height += location?.Coordinates?.[2]?.value ?? 0;
      placement = this.lines.get(placement.PlacementRelTo?.value);
    }
    return height * this.metersPerUnit();
  }

  metersPerUnit() {
    this.meters ??= this.findUnit();
    return this.meters;
  }

  findUnit() {
    for (const assignment of this.lines.ofType('IFCUNITASSIGNMENT')) {
      for (const unit of idsOf(assignment.Units).map((id) => this.lines.get(id))) {
        const meters = unit?.UnitType?.value === 'LENGTHUNIT' ? this.metersOf(unit) : null;
        if (meters !== null) {
          return meters;
        }
      }
    }
    return 1;
  }

  metersOf(unit) {
    if (unit.ConversionFactor) {
      const measure = this.lines.get(unit.ConversionFactor.value);
      const base = this.lines.get(measure?.UnitComponent?.value);
      return (measure?.ValueComponent?.value ?? 1) * (base ? this.metersOf(base) : 1);
    }
    const prefixes = { KILO: 1e3, CENTI: 1e-2, MILLI: 1e-3, MICRO: 1e-6 };
    return prefixes[unit.Prefix?.value] ?? 1;
  }

  // Products of one type are in a group of its name.
  typeGroupOf(product_, parent) {
    const type = this.relations.types.get(product_);
    const name = type === undefined ? '' : nameOf(this.lines.get(type));
    if (name === '') {
      return parent;
    }
    const key = `${parent} ${type}`;
    if (!this.typeGroups.has(key)) {
      this.typeGroups.set(key, this.addNode(name, parent));
    }
    return this.typeGroups.get(key);
  }

  addProduct(mesh) {
    const pieces = [];
    for (let i = 0; i < mesh.geometries.size(); ++i) {
      const { color, flatTransformation, geometryExpressID } = mesh.geometries.get(i);
      const matrix = product(FROM_WEB_IFC, flatTransformation);
      if (this.geometryOf(geometryExpressID) === null || !matrix.every(Number.isFinite)) {
        ++this.lost;
        continue;
      }
      pieces.push({ id: geometryExpressID, color: [color.x, color.y, color.z], matrix });
    }
    if (pieces.length === 0) {
      return;
    }
    this.origin ??= this.originFrom(pieces[0]);
    for (const piece of pieces) {
      piece.matrix = product(translation(...this.origin.map((c) => -c)), piece.matrix);
    }
    this.addPieces(mesh.expressID, pieces);
  }

  // The offset of a model that is far from the origin, in whole meters; otherwise zero.
  originFrom({ id, matrix }) {
    const { points } = this.geometryOf(id);
    const begin = apply(matrix, points[0], points[1], points[2]);
    return begin.map((c) => (Math.abs(c) > FAR ? Math.round(c) : 0));
  }

  addPieces(id, pieces) {
    const line = this.lines.get(id);
    const container = this.relations.parents.has(id) ? this.groupOf(this.relations.parents.get(id)) : null;
    const parent = this.typeGroupOf(id, container?.node ?? null);
    const node = this.nodes[this.addNode(nameOfProduct(line) || this.lines.className(line ?? { type: 0 }), parent)];
    // The first piece's frame is the node's, so that products that differ only in placement share a mesh.
    const frame = inverse(pieces[0].matrix) === null ? IDENTITY : pieces[0].matrix;
    const parts = pieces.map((piece) => ({ ...piece, matrix: product(inverse(frame), piece.matrix) }));
    node.matrix = product(inverse(container?.world ?? IDENTITY), frame);
    node.mesh = this.meshOf(parts);
  }

  meshOf(parts) {
    const key = parts.map(({ id, color, matrix }) => [id, ...color, ...matrix.map((c) => c.toFixed(6))].join()).join(';');
    if (!this.meshNumbers.has(key)) {
      this.meshNumbers.set(key, this.meshes.push(parts.map((part) => this.surfaceOf(part))) - 1);
    }
    return this.meshNumbers.get(key);
  }

  surfaceOf({ id, color, matrix }) {
    const { points, triangles } = this.geometryOf(id);
    const moved = new Float32Array(points.length);
    for (let i = 0; i < points.length; i += 3) {
      moved.set(apply(matrix, points[i], points[i + 1], points[i + 2]), i);
    }
    return { points: moved, triangles, color };
  }

  // The points and triangles of a geometry; null for one without.
  geometryOf(id) {
    if (!this.geometries.has(id)) {
      this.geometries.set(id, this.readGeometry(id));
    }
    return this.geometries.get(id);
  }

  readGeometry(id) {
    const geometry = this.api.GetGeometry(this.model, id);
    // Points with their normals.
    const vertices = this.api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
    const triangles = Uint32Array.from(this.api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize()));
    const points = new Float64Array(vertices.length / 2);
    for (let i = 0; i < vertices.length / 6; ++i) {
      points.set(vertices.subarray(6 * i, 6 * i + 3), 3 * i);
    }
    geometry.delete();
    return triangles.length === 0 ? null : { points, triangles };
  }
}

module.exports = { ReadError, SceneBuilder };

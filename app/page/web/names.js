// The lists of layers, objects and texts: what is shown, and where it is.

// Rows of a list; a search finds the others.
const MOST_ROWS = 200;

// A list of names with a switch for each. `rows` are { name, count, color, isShown }; `onSwitch` is
// told when some were switched, `onPick` which one was chosen.
class NameList {
  constructor(section, rows, { onSwitch, onPick }) {
    this.section = section;
    this.rows = rows;
    this.found = rows;
    this.onSwitch = onSwitch;
    this.onPick = onPick;
    this.list = section.querySelector('ul');
    this.more = section.querySelector('.more');
    for (const button of section.querySelectorAll('[data-all]')) {
      button.addEventListener('click', () => this.switchFound(button.dataset.all === 'on'));
    }
    section.hidden = rows.length === 0;
    this.build();
  }

  // Shows the rows whose name contains `words`, in any case.
  search(words) {
    this.found = this.rows.filter((row) => row.name.toLowerCase().includes(words));
    this.build();
  }

  switchFound(isShown) {
    for (const row of this.found) {
      row.isShown = isShown;
    }
    this.build();
    this.onSwitch();
  }

  build() {
    this.list.replaceChildren(...this.found.slice(0, MOST_ROWS).map((row) => this.makeRow(row)));
    const others = this.found.length - MOST_ROWS;
    this.more.textContent = others > 0 ? `and ${others} more: search for them` : '';
  }

  makeRow(row) {
    const item = document.createElement('li');
    if (row.isShown !== undefined) {
      const box = document.createElement('input');
      box.type = 'checkbox';
      box.checked = row.isShown;
      box.setAttribute('aria-label', `Show ${row.name}`);
      box.addEventListener('change', () => {
        row.isShown = box.checked;
        this.onSwitch();
      });
      item.append(box);
    }
    if (row.color) {
      const swatch = document.createElement('span');
      swatch.className = 'swatch';
      swatch.style.background = row.color();
      item.append(swatch);
    }
    const name = document.createElement('button');
    name.type = 'button';
    name.textContent = row.name || '(no name)';
    name.title = row.name;
    name.addEventListener('click', () => this.onPick(row));
    item.append(name);
    if (row.count > 1) {
      const count = document.createElement('span');
      count.className = 'count';
      count.textContent = row.count;
      item.append(count);
    }
    return item;
  }
}

// For each name, the placements that have it, and how many things that is: neither what is part of
// another of the same name, nor a label.
function objectRows(drawing) {
  const { placements, names } = drawing;
  const rows = new Map();
  placements.forEach((place, number) => {
    if (number === 0) {
      return;
    }
    const block = drawing.blocks[place.block];
    const isLabel = block.lines[0] === block.lines[1] && block.inserts[0] === block.inserts[1];
    const isPart = isLabel || (place.parent > 0 && placements[place.parent].name === place.name);
    if (!rows.has(place.name)) {
      rows.set(place.name, { name: names[place.name], number: place.name, placements: [], count: 0, isShown: true });
    }
    const row = rows.get(place.name);
    row.placements.push(number);
    row.count += isPart ? 0 : 1;
  });
  // Names before their numbers: "Door 2" before "Door 10".
  return [...rows.values()].sort((a, b) => a.name.localeCompare(b.name, undefined, { numeric: true }));
}

// The layers that something stands on; `count` is the number of lines and texts, once for each place.
function layerRows(drawing, colorOf) {
  const counts = drawing.layers.map(() => 0);
  const add = (styles, range, layer, shift) => {
    for (let i = range[0]; i < range[1]; i++) {
      counts[drawing.styles[styles[i] >>> shift].layer || layer]++;
    }
  };
  for (const place of drawing.placements) {
    const block = drawing.blocks[place.block];
    add(drawing.lineStyles, block.lines, place.layer, 1);
    add(drawing.circleStyles, block.circles, place.layer, 0);
    add(drawing.textStyles, block.texts, place.layer, 0);
  }
  return drawing.layers
    .map((layer, number) => ({ name: layer.name, number, count: counts[number], isShown: true, color: () => colorOf(number) }))
    .filter((row) => row.count > 0);
}

// The placement of each text, once for each place where it stands.
function textRows(drawing) {
  const rows = [];
  drawing.placements.forEach((place, number) => {
    const block = drawing.blocks[place.block];
    for (let i = block.texts[0]; i < block.texts[1]; i++) {
      rows.push({ name: drawing.textList[i], text: i, placement: number, count: 1 });
    }
  });
  return rows;
}

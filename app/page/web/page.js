// The page itself: what keys, pointer and buttons do.

const byId = (id) => document.getElementById(id);

class Page {
  constructor() {
    this.drawing = readDrawing();
    this.sheet = byId('sheet');
    this.picture = byId('picture');
    this.marks = byId('marks');
    this.renderer = new Renderer(this.drawing);
    this.camera = new Camera(this.drawing.extents);
    this.tape = new Tape(this.drawing.unit);
    this.scheme = matchMedia('(prefers-color-scheme: dark)').matches ? NIGHT : PAPER;
    // Placements that are marked, and the row that they are of.
    this.marked = new Set();
    this.isMeasuring = false;
    // Where the pointer or the cross is, in pixels, and what it snaps to, in the drawing.
    this.cross = null;
    this.snap = null;
    this.frame = 0;
    this.isLate = false;
    this.makeLists();
    this.showScheme();
    this.listen();
    this.resize();
    this.camera.fit();
    this.drawNow();
    performance.measure('first picture');
  }

  get ratio() {
    return Math.min(window.devicePixelRatio || 1, 3);
  }

  // ---- What is shown

  makeLists() {
    const colorOf = (layer) => colorOn(this.scheme, this.drawing.layers[layer].color);
    const switched = { onSwitch: () => this.takeSwitches() };
    this.objects = new NameList(byId('objects'), objectRows(this.drawing),
      { ...switched, onPick: (row) => this.show(row) });
    this.layers = new NameList(byId('layers'), layerRows(this.drawing, colorOf),
      { ...switched, onPick: (row) => this.show(row) });
    this.texts = new NameList(byId('texts'), [], { onSwitch: () => {}, onPick: (row) => this.show(row) });
    this.texts.rows = textRows(this.drawing);
  }

  takeSwitches() {
    const { renderer, drawing } = this;
    for (const row of this.layers.rows) {
      renderer.isLayerShown[row.number] = row.isShown ? 1 : 0;
    }
    const isNameShown = new Map(this.objects.rows.map((row) => [row.number, row.isShown]));
    drawing.placements.forEach((place, number) => {
      const isShown = number === 0 || (isNameShown.get(place.name) && renderer.isPlacementShown[place.parent]);
      renderer.isPlacementShown[number] = isShown ? 1 : 0;
    });
    this.draw();
  }

  // The placements in which a row's things stand, those in one another included.
  placementsOf(row) {
    const { drawing } = this;
    if (row.placement !== undefined) {
      return new Set([row.placement]);
    }
    if (row.placements) {
      const found = new Set(row.placements);
      drawing.placements.forEach((place, number) => {
        if (found.has(place.parent)) {
          found.add(number);
        }
      });
      return found;
    }
    const found = new Set();
    drawing.placements.forEach((place, number) => {
      const block = drawing.blocks[place.block];
      for (let i = block.lines[0]; i < block.lines[1]; i++) {
        if ((drawing.styles[drawing.lineStyles[i] >>> 1].layer || place.layer) === row.number) {
          found.add(number);
          break;
        }
      }
    });
    return found;
  }

  // Moves to what a row is of, and marks it.
  show(row) {
    const placements = this.placementsOf(row);
    const box = [Infinity, Infinity, -Infinity, -Infinity];
    const add = (x, y) => {
      box[0] = Math.min(box[0], x);
      box[1] = Math.min(box[1], y);
      box[2] = Math.max(box[2], x);
      box[3] = Math.max(box[3], y);
    };
    if (row.text !== undefined) {
      const place = this.drawing.placements[row.placement];
      const [x, y, height, wide] = this.drawing.texts.subarray(5 * row.text, 5 * row.text + 4);
      const reach = height * (1 + (wide * row.name.length) / 2);
      const middle = [place.cos * x - place.sin * y + place.x, place.sin * x + place.cos * y + place.y];
      add(middle[0] - reach, middle[1] - reach);
      add(middle[0] + reach, middle[1] + reach);
    } else {
      for (const placement of placements) {
        eachCorner(this.drawing, this.drawing.placements[placement], add);
      }
    }
    if (box[0] > box[2]) {
      this.say(`${row.name}: shows nothing`);
      return;
    }
    const room = Math.max(box[2] - box[0], box[3] - box[1]) / 2;
    this.camera.fit([box[0] - room, box[1] - room, box[2] + room, box[3] + room]);
    // A layer is not marked: it may be everything.
    this.marked = row.number !== undefined && !row.placements ? new Set() : placements;
    this.say(row.count > 1 ? `${row.name}: ${row.count}` : row.name);
    this.draw();
  }

  search(words) {
    const wanted = words.trim().toLowerCase();
    this.objects.search(wanted);
    this.layers.search(wanted);
    this.texts.search(wanted);
    const isSearching = wanted !== '';
    byId('texts').hidden = !isSearching || this.texts.found.length === 0;
    this.found = isSearching ? [...this.objects.found, ...this.layers.found, ...this.texts.found] : [];
    this.next = 0;
    const count = this.found.length;
    byId('found').textContent = !isSearching ? '' : count === 0 ? 'Nothing of this name'
      : `${count} found; Enter shows ${count === 1 ? 'it' : 'the next'}`;
  }

  showNext() {
    if (this.found && this.found.length > 0) {
      this.show(this.found[this.next++ % this.found.length]);
    }
  }

  // ---- Drawing

  resize() {
    const { clientWidth, clientHeight } = this.sheet;
    const isFirst = this.camera.width === 1;
    this.camera.resize(clientWidth, clientHeight);
    for (const canvas of [this.picture, this.marks]) {
      canvas.width = Math.max(1, Math.round(clientWidth * this.ratio));
      canvas.height = Math.max(1, Math.round(clientHeight * this.ratio));
    }
    if (!isFirst) {
      this.drawNow();
    }
  }

  // Draws before the next frame. A large drawing follows the pointer as a picture of itself until the
  // pointer rests.
  draw(isMoving = false) {
    clearTimeout(this.timer);
    this.isLate = isMoving && this.cost > 40;
    if (this.isLate) {
      this.timer = setTimeout(() => this.draw(), 150);
    }
    if (!this.frame) {
      this.frame = requestAnimationFrame(() => {
        this.frame = 0;
        if (this.isLate) {
          this.movePicture();
        } else {
          this.drawNow();
        }
      });
    }
  }

  drawNow() {
    const began = performance.now();
    const context = this.picture.getContext('2d', { alpha: false });
    this.fill(context, this.picture, this.scheme);
    this.renderer.draw(context, this.camera, this.scheme, this.ratio);
    this.picture.style.transform = '';
    this.drawn = this.camera.copy();
    this.cost = performance.now() - began;
    this.drawMarks();
    this.showScale();
  }

  fill(context, canvas, scheme) {
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.fillStyle = scheme.back;
    context.fillRect(0, 0, canvas.width, canvas.height);
  }

  movePicture() {
    const { camera, drawn } = this;
    const factor = camera.scale / drawn.scale;
    const [x, y] = camera.toPixel(...drawn.toDrawing(0, 0));
    this.picture.style.transform = `translate(${x}px, ${y}px) scale(${factor})`;
    this.drawMarks(true);
    this.showScale();
  }

  drawMarks(isMoving = false) {
    const context = this.marks.getContext('2d');
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.clearRect(0, 0, this.marks.width, this.marks.height);
    if (this.marked.size > 0 && !isMoving) {
      this.renderer.draw(context, this.camera, this.scheme, this.ratio, this.marked);
    }
    if (this.isMeasuring) {
      this.tape.draw(context, this.camera, this.scheme, this.ratio, this.snap);
      this.drawCross(context);
    }
  }

  drawCross(context) {
    if (!this.snap) {
      return;
    }
    const [x, y] = this.camera.toPixel(...this.snap).map((pixel) => pixel * this.ratio);
    const arm = 12 * this.ratio;
    context.lineWidth = this.ratio;
    context.beginPath();
    context.moveTo(x - arm, y);
    context.lineTo(x + arm, y);
    context.moveTo(x, y - arm);
    context.lineTo(x, y + arm);
    context.stroke();
  }

  // A round length of at most 120 pixels.
  scaleLength() {
    const most = 120 / this.camera.scale;
    const power = 10 ** Math.floor(Math.log10(most));
    return [5, 2, 1].find((digit) => digit * power <= most) * power;
  }

  showScale() {
    const length = this.scaleLength();
    const bar = byId('scale');
    bar.style.width = `${length * this.camera.scale}px`;
    bar.firstElementChild.textContent = `${lengthText(length)}${this.tape.unit}`;
  }

  showScheme() {
    document.documentElement.dataset.scheme = this.scheme.isDark ? 'dark' : 'light';
    byId('dark').setAttribute('aria-pressed', String(this.scheme.isDark));
    this.layers.build();
  }

  say(text) {
    byId('news').textContent = text;
  }

  // ---- Commands

  toggleDark() {
    this.scheme = this.scheme.isDark ? PAPER : NIGHT;
    this.showScheme();
    this.draw();
  }

  togglePanel() {
    const panel = byId('panel');
    panel.hidden = !panel.hidden;
    byId('names').setAttribute('aria-pressed', String(!panel.hidden));
    byId('names').setAttribute('aria-expanded', String(!panel.hidden));
  }

  fit() {
    this.camera.fit();
    this.draw();
  }

  zoom(factor, x, y) {
    this.camera.zoom(factor, x, y);
    this.draw(true);
  }

  toggleMeasure(isOn = !this.isMeasuring) {
    this.isMeasuring = isOn;
    this.tape.clear();
    this.snap = null;
    byId('measure').setAttribute('aria-pressed', String(isOn));
    this.sheet.classList.toggle('measured', isOn);
    this.say(isOn ? 'Measure: choose two points' : '');
    if (isOn) {
      this.sheet.focus({ preventScroll: true });
      this.moveCross(this.camera.width / 2, this.camera.height / 2);
    }
    this.drawMarks();
  }

  // The cross snaps to a vertex that is near.
  moveCross(x, y) {
    this.cross = [x, y];
    const near = nearestTo(this.renderer, x, y, 10);
    this.snap = near && near.vertex ? this.camera.toDrawing(...near.vertex) : this.camera.toDrawing(x, y);
    if (this.tape.points.length === 1) {
      this.say(this.tape.text(this.snap));
    }
    this.drawMarks();
  }

  takePoint() {
    this.tape.add(this.snap);
    this.say(this.tape.points.length === 2 ? this.tape.text() : 'Measure: choose the other end');
    this.drawMarks();
  }

  // Says what the line at this place is, and marks it.
  pick(x, y) {
    const near = nearestTo(this.renderer, x, y, 6);
    this.marked = new Set();
    if (near) {
      const { drawing } = this;
      const place = drawing.placements[near.placement];
      const layer = `layer ${drawing.layers[near.layer].name}`;
      this.marked.add(near.placement);
      this.say(near.placement === 0 ? layer : `${drawing.names[place.name]}, ${layer}`);
    } else {
      this.say('');
    }
    this.drawMarks();
  }

  clear() {
    this.marked = new Set();
    if (this.isMeasuring) {
      this.toggleMeasure(false);
    }
    this.say('');
    this.drawMarks();
  }

  // ---- Printing: what is shown, on paper and finer than on the screen

  beginPrint() {
    const fine = Math.max(this.ratio, 3000 / this.camera.width);
    this.picture.width = Math.round(this.camera.width * fine);
    this.picture.height = Math.round(this.camera.height * fine);
    this.picture.style.transform = '';
    const context = this.picture.getContext('2d', { alpha: false });
    this.fill(context, this.picture, PAPER);
    this.renderer.draw(context, this.camera, PAPER, fine);
    this.printScale(context, fine);
  }

  // The scale bar, in the lower right corner.
  printScale(context, fine) {
    const length = this.scaleLength();
    const right = this.picture.width - 16 * fine;
    const bottom = this.picture.height - 12 * fine;
    const left = right - length * this.camera.scale * fine;
    context.strokeStyle = '#000000';
    context.fillStyle = '#000000';
    context.lineWidth = fine;
    context.beginPath();
    context.moveTo(left, bottom - 6 * fine);
    context.lineTo(left, bottom);
    context.lineTo(right, bottom);
    context.lineTo(right, bottom - 6 * fine);
    context.stroke();
    context.font = `${12 * fine}px sans-serif`;
    context.fillText(`${lengthText(length)}${this.tape.unit}`, left, bottom - 8 * fine);
  }

  endPrint() {
    this.resize();
  }

  // ---- Pointer and keys

  listen() {
    this.listenToButtons();
    this.listenToPointer();
    this.sheet.addEventListener('wheel', (event) => {
      event.preventDefault();
      const { x, y } = this.placeOf(event);
      const lines = event.deltaMode === 1 ? 16 : 1;
      this.zoom(Math.exp(-Math.max(-200, Math.min(200, event.deltaY * lines)) / 400), x, y);
    }, { passive: false });
    document.addEventListener('keydown', (event) => this.takeKey(event));
    window.addEventListener('beforeprint', () => this.beginPrint());
    window.addEventListener('afterprint', () => this.endPrint());
    new ResizeObserver(() => this.resize()).observe(this.sheet);
  }

  listenToButtons() {
    const actions = {
      fit: () => this.fit(),
      in: () => this.zoom(1.5),
      out: () => this.zoom(1 / 1.5),
      measure: () => this.toggleMeasure(),
      dark: () => this.toggleDark(),
      print: () => window.print(),
      names: () => this.togglePanel(),
      help: () => byId('keys').showModal(),
    };
    for (const [id, action] of Object.entries(actions)) {
      byId(id).addEventListener('click', action);
    }
    const search = byId('search');
    search.addEventListener('input', () => this.search(search.value));
    search.addEventListener('keydown', (event) => {
      if (event.key === 'Enter') {
        this.showNext();
      } else if (event.key === 'Escape') {
        search.value = '';
        this.search('');
        this.sheet.focus();
      }
      event.stopPropagation();
    });
  }

  placeOf(event) {
    const box = this.sheet.getBoundingClientRect();
    return { x: event.clientX - box.left, y: event.clientY - box.top };
  }

  // One pointer moves, two zoom.
  listenToPointer() {
    const down = new Map();
    let moved = 0;
    this.sheet.addEventListener('pointerdown', (event) => {
      if (event.button !== 0) {
        return;
      }
      this.sheet.setPointerCapture(event.pointerId);
      down.set(event.pointerId, this.placeOf(event));
      moved = 0;
    });
    this.sheet.addEventListener('pointermove', (event) => {
      const now = this.placeOf(event);
      const before = down.get(event.pointerId);
      this.showPlace(now);
      if (!before) {
        if (this.isMeasuring) {
          this.moveCross(now.x, now.y);
        }
        return;
      }
      down.set(event.pointerId, now);
      moved += Math.hypot(now.x - before.x, now.y - before.y);
      if (moved < 4 && down.size === 1) {
        return;
      }
      this.sheet.classList.add('dragged');
      this.dragPointer(down, event.pointerId, before, now);
    });
    const end = (event) => {
      const isClick = down.size === 1 && moved < 4 && down.has(event.pointerId) && event.type === 'pointerup';
      down.delete(event.pointerId);
      this.sheet.classList.remove('dragged');
      if (isClick) {
        this.click(this.placeOf(event));
      }
    };
    this.sheet.addEventListener('pointerup', end);
    this.sheet.addEventListener('pointercancel', end);
  }

  dragPointer(down, pointer, before, now) {
    if (down.size === 1) {
      this.camera.move(now.x - before.x, now.y - before.y);
    } else {
      const other = [...down].find(([id]) => id !== pointer)[1];
      const apart = (point) => Math.hypot(point.x - other.x, point.y - other.y) || 1;
      this.camera.move((now.x - before.x) / 2, (now.y - before.y) / 2);
      this.camera.zoom(apart(now) / apart(before), (now.x + other.x) / 2, (now.y + other.y) / 2);
    }
    this.draw(true);
  }

  click({ x, y }) {
    if (this.isMeasuring) {
      this.moveCross(x, y);
      this.takePoint();
    } else {
      this.pick(x, y);
    }
  }

  showPlace({ x, y }) {
    const [right, up] = this.camera.toDrawing(x, y);
    byId('place').textContent = `${lengthText(right)}, ${lengthText(up)}${this.tape.unit}`;
  }

  takeKey(event) {
    if (event.ctrlKey || event.metaKey || event.altKey || byId('keys').open) {
      return;
    }
    // Buttons and lists keep the keys that they have a use for.
    const isOnSheet = !event.target.closest('button, input, dialog');
    const isMove = event.key.startsWith('Arrow') || event.key === 'Enter';
    if (isMove && !isOnSheet) {
      return;
    }
    const action = this.keyActions(event.shiftKey)[event.key];
    if (action) {
      event.preventDefault();
      action();
    }
  }

  keyActions(isFine) {
    const step = this.isMeasuring ? (isFine ? 1 : 10) : Math.min(this.camera.width, this.camera.height) / 8;
    const move = (right, down) => () => {
      if (this.isMeasuring) {
        this.moveCross(this.cross[0] + right * step, this.cross[1] + down * step);
      } else {
        this.camera.move(-right * step, -down * step);
        this.draw();
      }
    };
    return {
      ArrowLeft: move(-1, 0),
      ArrowRight: move(1, 0),
      ArrowUp: move(0, -1),
      ArrowDown: move(0, 1),
      Enter: () => this.isMeasuring && this.takePoint(),
      '+': () => this.zoom(1.5),
      '=': () => this.zoom(1.5),
      '-': () => this.zoom(1 / 1.5),
      0: () => this.fit(),
      Home: () => this.fit(),
      '/': () => this.focusSearch(),
      m: () => this.toggleMeasure(),
      d: () => this.toggleDark(),
      l: () => this.togglePanel(),
      p: () => window.print(),
      '?': () => byId('keys').showModal(),
      Escape: () => this.clear(),
    };
  }

  focusSearch() {
    if (byId('panel').hidden) {
      this.togglePanel();
    }
    byId('search').focus();
    byId('search').select();
  }
}

new Page();

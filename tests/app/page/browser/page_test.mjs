// What a person does with a page, done in a browser.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { block, coordinatesAt, drawing, drawn, insert, line, middle, Pages, pixels, text, textOf } from './pages.mjs';

const RED = [255, 0, 0];
const BLUE = [0, 0, 255];
const MARK = [11, 98, 214];

const pages = new Pages();
before(() => pages.open());
after(() => pages.close());

// A red line on layer Walls and two blue doors.
const plan = drawing(
  line('Walls', 1, [0, 0], [400, 0]) + line('Walls', 1, [0, 0], [0, 300]) +
  insert('Door', [100, 100]) + insert('Door', [300, 200], 90) + text('Kitchen', 20, [200, 50]),
  block('Door', line('0', 5, [0, 0], [80, 0]) + line('0', 5, [0, 0], [0, 20])));

async function showPlan(t, scheme) {
  const page = await pages.show(pages.make(plan), scheme);
  t.after(() => page.close());
  await drawn(page);
  return page;
}

const near = (actual, expected, within) =>
  assert.ok(Math.abs(actual - expected) <= within, `${actual} is not within ${within} of ${expected}`);

test('shows the whole drawing, asks for nothing and complains of nothing', async (t) => {
  const page = await showPlan(t);
  assert.deepEqual(page.complaints, []);
  assert.equal(await page.title(), 'plan.dxf');
  assert.ok((await pixels(page, RED)).count > 300);
  assert.ok((await pixels(page, BLUE)).count > 50);
  const { x, y } = await middle(page);
  const [right, up] = await coordinatesAt(page, x, y);
  near(right, 200, 2);
  near(up, 150, 2);
});

test('places blocks turned and moved', async (t) => {
  const page = await pages.show(pages.make(drawing(
    line('0', 1, [0, 0], [100, 0]) + line('0', 1, [0, 100], [100, 100]) + insert('B', [50, 50], 90),
    block('B', line('0', 5, [0, 0], [40, 0])))));
  t.after(() => page.close());
  await drawn(page);
  // A line between two rows of pixels is half in each.
  const blue = await pixels(page, BLUE, 'picture', 300);
  const { width, height } = await middle(page);
  const scale = (height - 48) / 100;
  near(blue.x, width / 2, 2);
  near(blue.y, height / 2 - 20 * scale, 2);
});

test('dragging moves the drawing with the pointer', async (t) => {
  const page = await showPlan(t);
  const { x, y } = await middle(page);
  const before = await coordinatesAt(page, x, y);
  await page.mouse.down();
  await page.mouse.move(x + 60, y - 40, { steps: 4 });
  await page.mouse.up();
  await drawn(page);
  const after = await coordinatesAt(page, x + 60, y - 40);
  near(after[0], before[0], 0.5);
  near(after[1], before[1], 0.5);
});

test('the wheel zooms around the pointer', async (t) => {
  const page = await showPlan(t);
  const { x, y } = await middle(page);
  const before = await coordinatesAt(page, x + 100, y + 50);
  const beside = await coordinatesAt(page, x + 200, y + 50);
  await page.mouse.move(x + 100, y + 50);
  await page.mouse.wheel({ deltaY: -200 });
  await drawn(page);
  const after = await coordinatesAt(page, x + 100, y + 50);
  near(after[0], before[0], 0.5);
  near(after[1], before[1], 0.5);
  const closer = await coordinatesAt(page, x + 200, y + 50);
  assert.ok(closer[0] - after[0] < (beside[0] - before[0]) * 0.8);
});

test('keys move, zoom and fit', async (t) => {
  const page = await showPlan(t);
  const { x, y, height } = await middle(page);
  const [right, up] = await coordinatesAt(page, x, y);
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowUp');
  await drawn(page);
  const moved = await coordinatesAt(page, x, y);
  const step = (height / 8) * (300 / (height - 48));
  near(moved[0] - right, step, step / 10);
  near(moved[1] - up, step, step / 10);
  await page.keyboard.press('+');
  await page.keyboard.press('0');
  await drawn(page);
  near((await coordinatesAt(page, x, y))[0], right, 0.5);
});

test('switches layers off and on', async (t) => {
  const page = await showPlan(t);
  const walls = 'input[aria-label="Show Walls"]';
  await page.click(walls);
  await drawn(page);
  assert.equal((await pixels(page, RED)).count, 0);
  assert.ok((await pixels(page, BLUE)).count > 50);
  await page.click(walls);
  await drawn(page);
  assert.ok((await pixels(page, RED)).count > 300);
});

test('switches blocks off, all of their places at once', async (t) => {
  const page = await showPlan(t);
  assert.equal(await textOf(page, '#objects li .count'), '2');
  await page.click('input[aria-label="Show Door"]');
  await drawn(page);
  assert.equal((await pixels(page, BLUE)).count, 0);
  await page.click('#objects [data-all="on"]');
  await drawn(page);
  assert.ok((await pixels(page, BLUE)).count > 50);
});

test('finds names and texts, and shows one after the other', async (t) => {
  const page = await showPlan(t);
  await page.keyboard.press('/');
  await page.keyboard.type('KITCH');
  assert.match(await textOf(page, '#found'), /^1 found/);
  await page.keyboard.press('Enter');
  await drawn(page);
  assert.equal(await textOf(page, '#news'), 'Kitchen');
  const { x, y } = await middle(page);
  const [right, up] = await coordinatesAt(page, x, y);
  near(right, 200, 40);
  near(up, 50, 40);
  await page.click('#search', { count: 3 });
  await page.keyboard.type('door');
  await page.keyboard.press('Enter');
  await drawn(page);
  assert.equal(await textOf(page, '#news'), 'Door: 2');
  assert.ok((await pixels(page, MARK, 'marks')).count > 50);
  await page.click('#search', { count: 3 });
  await page.keyboard.type('nobody');
  assert.equal(await textOf(page, '#found'), 'Nothing of this name');
});

// Of a point of the drawing, its place in the window.
async function placeOf(page, wanted) {
  const { x, y } = await middle(page);
  const [x0, y0] = await coordinatesAt(page, x, y);
  const [x1] = await coordinatesAt(page, x + 100, y);
  const scale = 100 / (x1 - x0);
  return [x + (wanted[0] - x0) * scale, y - (wanted[1] - y0) * scale];
}

test('measures between vertices that are near the pointer', async (t) => {
  const page = await showPlan(t);
  const from = await placeOf(page, [400, 0]);
  const to = await placeOf(page, [0, 300]);
  await page.click('#measure');
  await page.mouse.click(from[0] + 4, from[1] - 3);
  await page.mouse.click(to[0] - 3, to[1] + 4);
  assert.equal(await textOf(page, '#news'), 'Distance 500 mm (across -400, up 300, 143.1°)');
  await page.keyboard.press('Escape');
  assert.equal(await page.$eval('#measure', (button) => button.getAttribute('aria-pressed')), 'false');
});

test('measures with the keyboard alone', async (t) => {
  const page = await showPlan(t);
  await page.keyboard.press('m');
  await page.keyboard.press('Enter');
  for (let i = 0; i < 10; i++) {
    await page.keyboard.press('ArrowRight');
  }
  await page.keyboard.press('Enter');
  const { height } = await middle(page);
  const said = /^Distance ([\d.]+) mm \(across ([\d.]+), up 0, 0\.0°\)$/.exec(await textOf(page, '#news'));
  assert.ok(said, await textOf(page, '#news'));
  near(Number(said[1]), 100 * (300 / (height - 48)), 0.5);
});

test('a click says what a line is', async (t) => {
  const page = await showPlan(t);
  await page.mouse.click(...(await placeOf(page, [140, 100])));
  assert.equal(await textOf(page, '#news'), 'Door, layer 0');
  assert.ok((await pixels(page, MARK, 'marks')).count > 20);
  await page.mouse.click(...(await placeOf(page, [100, 0])));
  assert.equal(await textOf(page, '#news'), 'layer Walls');
});

test('is dark where the user wants it, and black lines are light then', async (t) => {
  const black = pages.make(drawing(line('0', 7, [0, 0], [100, 50]) + line('0', 7, [0, 50], [100, 0])));
  const page = await pages.show(black, 'dark');
  t.after(() => page.close());
  await drawn(page);
  assert.equal(await page.evaluate(() => document.documentElement.dataset.scheme), 'dark');
  assert.ok((await pixels(page, [228, 232, 238], 'picture', 300)).count > 300);
  await page.keyboard.press('d');
  await drawn(page);
  assert.equal(await page.evaluate(() => document.documentElement.dataset.scheme), 'light');
  assert.ok((await pixels(page, [0, 0, 0], 'picture', 300)).count > 300);
});

test('prints what is shown, finely and on white', async (t) => {
  const page = await showPlan(t, 'dark');
  const [width, corner] = await page.evaluate(() => {
    window.dispatchEvent(new Event('beforeprint'));
    const canvas = document.getElementById('picture');
    return [canvas.width, [...canvas.getContext('2d').getImageData(0, 0, 1, 1).data]];
  });
  assert.ok(width >= 2990);
  assert.deepEqual(corner, [255, 255, 255, 255]);
  await page.evaluate(() => window.dispatchEvent(new Event('afterprint')));
  const sheet = await middle(page);
  assert.equal(await page.$eval('#picture', (canvas) => canvas.width), Math.round(sheet.width));
  const pdf = await page.pdf({ format: 'a4', landscape: true });
  // One page, with title and scale bar.
  assert.match(Buffer.from(pdf).toString('latin1'), /\/Count 1\b/);
  assert.deepEqual(page.complaints, []);
});

test('runs nothing that stands in names or texts', async (t) => {
  const evil = (number) => `</script><img src=x onerror="evil=${number}"><svg onload='evil=${number}'>"';evil=${number}//\u2028<!--`;
  const page = await pages.show(pages.make(drawing(
    line(evil(1), 1, [0, 0], [9, 9]) + insert(evil(2), [0, 0]) + text(evil(3), 1, [0, 0]),
    block(evil(2), line('0', 5, [0, 0], [8, 0]))), '--title', evil(4), '--codepage', '65001'));
  t.after(() => page.close());
  await page.click('#search');
  await page.keyboard.type('evil');
  await page.keyboard.press('Enter');
  await drawn(page);
  assert.deepEqual(page.complaints, []);
  assert.equal(await page.evaluate(() => typeof window.evil), 'undefined');
  assert.equal(await page.evaluate(() => document.querySelectorAll('img, svg, iframe').length), 0);
  // As it was written, but for the characters that no name may have.
  assert.match(await textOf(page, '#layers li:last-child button'), /^<\/script><img src=x onerror="evil=1">/);
  assert.match(await page.title(), /^<\/script><img src=x/);
});

test('its policy keeps any other script from running and any network out', async (t) => {
  const page = await showPlan(t);
  const outcome = await page.evaluate(async () => {
    const outcomes = [];
    const attempt = async (name, what) => {
      try {
        await what();
      } catch {
        outcomes.push(name);
      }
    };
    await attempt('fetch', () => fetch('http://127.0.0.1:9/'));
    await attempt('markup', () => {
      document.body['inner' + 'HTML'] = '<p>';
    });
    await attempt('script', () => {
      const script = document.createElement('script');
      script.textContent = 'window.evil = 1';
    });
    return outcomes;
  });
  assert.deepEqual(outcome, ['fetch', 'markup', 'script']);
});

test('everything that can be used has a name, and the keyboard reaches it', async (t) => {
  const page = await showPlan(t);
  const nameless = [];
  const visit = (node) => {
    if (['button', 'checkbox', 'searchbox', 'application', 'textbox'].includes(node.role) && !node.name) {
      nameless.push(node.role);
    }
    (node.children || []).forEach(visit);
  };
  visit(await page.accessibility.snapshot());
  assert.deepEqual(nameless, []);
  const reached = new Set();
  for (let i = 0; i < 40; i++) {
    await page.keyboard.press('Tab');
    reached.add(await page.evaluate(() => document.activeElement.id || document.activeElement.type));
  }
  for (const id of ['fit', 'measure', 'search', 'checkbox', 'sheet']) {
    assert.ok(reached.has(id), `${id} is not reached`);
  }
  await page.keyboard.press('?');
  assert.equal(await page.$eval('#keys', (dialog) => dialog.open), true);
  await page.keyboard.press('Escape');
  assert.equal(await page.$eval('#keys', (dialog) => dialog.open), false);
});

test('the list of names goes away and comes back', async (t) => {
  const page = await showPlan(t);
  const before = (await middle(page)).width;
  await page.keyboard.press('l');
  await drawn(page);
  const sheet = await middle(page);
  assert.ok(sheet.width > before + 200);
  assert.equal(await page.$eval('#picture', (canvas) => canvas.width), Math.round(sheet.width));
  await page.click('#names');
  assert.equal((await middle(page)).width, before);
});

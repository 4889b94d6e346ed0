// Pages of drawings, opened in a browser without a graphics card and without a network.
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import puppeteer from 'puppeteer-core';

const group = (code, value) => `${String(code).padStart(3)}\n${value}\n`;

const pointText = (code, [x, y]) => group(code, x) + group(code + 10, y) + group(code + 20, 0);

export const line = (layer, color, from, to) =>
  group(0, 'LINE') + group(8, layer) + group(62, color) + pointText(10, from) + pointText(11, to);

export const text = (words, height, at) =>
  group(0, 'TEXT') + group(8, '0') + pointText(10, at) + group(40, height) + group(1, words);

export const insert = (block, at, degrees = 0) =>
  group(0, 'INSERT') + group(8, '0') + group(2, block) + pointText(10, at) + group(50, degrees);

export const block = (name, content) =>
  group(0, 'BLOCK') + group(8, '0') + group(2, name) + group(70, 0) + pointText(10, [0, 0]) + content +
  group(0, 'ENDBLK') + group(8, '0');

// In millimeters.
export const drawing = (entities, blocks = '') =>
  group(0, 'SECTION') + group(2, 'HEADER') + group(9, '$ACADVER') + group(1, 'AC1015') +
  group(9, '$INSUNITS') + group(70, 4) + group(0, 'ENDSEC') +
  group(0, 'SECTION') + group(2, 'BLOCKS') + blocks + group(0, 'ENDSEC') +
  group(0, 'SECTION') + group(2, 'ENTITIES') + entities + group(0, 'ENDSEC') + group(0, 'EOF');

// A browser with a profile of its own, and a directory for what it opens.
export class Pages {
  async open() {
    this.directory = mkdtempSync(join(tmpdir(), 'dxf2d-pages-'));
    this.browser = await puppeteer.launch({
      executablePath: process.env.BROWSER || '/usr/bin/chromium',
      userDataDir: join(this.directory, 'profile'),
      args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
        '--disable-component-update', '--disable-sync'],
    });
  }

  async close() {
    await this.browser?.close();
    rmSync(this.directory, { recursive: true, force: true });
  }

  // The page that dxf2d makes of a drawing's text, or of a file.
  make(input, ...options) {
    const isText = input.includes('\n');
    const file = isText ? join(this.directory, 'plan.dxf') : input;
    if (isText) {
      writeFileSync(file, input);
    }
    const page = join(this.directory, 'page.html');
    const end = spawnSync(process.env.DXF2D, ['view', file, '-o', page, '--force', '--quiet', ...options], { encoding: 'utf8' });
    if (end.status !== 0) {
      throw new Error(`dxf2d view: ${end.status} ${end.stderr}`);
    }
    return page;
  }

  // Shows a page in a window of 1000 by 600. What it prints, fails at or asks the network for is in
  // `page.complaints`.
  async show(file, scheme = 'light') {
    const page = await this.browser.newPage();
    page.complaints = [];
    page.on('console', (message) => page.complaints.push(message.text()));
    page.on('pageerror', (error) => page.complaints.push(error.message));
    page.on('request', (request) => request.url().startsWith('file:') || page.complaints.push(request.url()));
    await page.setViewport({ width: 1000, height: 600 });
    await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: scheme }]);
    await page.goto(`file://${file}`);
    return page;
  }
}

// Waits until the page has drawn what it was asked to.
export const drawn = (page) =>
  page.evaluate(() => new Promise((done) => {
    // A moved picture is drawn anew once the pointer rests.
    setTimeout(() => requestAnimationFrame(() => requestAnimationFrame(() => done())), 200);
  }));

// The middle of the pixels of a canvas that are nearly of a color, in pixels of the sheet, and their
// number. `most` is the sum by which their components may differ.
export const pixels = (page, [red, green, blue], canvas = 'picture', most = 120) =>
  page.evaluate((id, wanted, within) => {
    const element = document.getElementById(id);
    const { width, height } = element;
    const { data } = element.getContext('2d').getImageData(0, 0, width, height);
    let count = 0;
    let x = 0;
    let y = 0;
    for (let i = 0; i < data.length; i += 4) {
      const apart = Math.abs(data[i] - wanted[0]) + Math.abs(data[i + 1] - wanted[1]) + Math.abs(data[i + 2] - wanted[2]);
      if (apart < within && data[i + 3] > 100) {
        count++;
        x += (i / 4) % width;
        y += Math.floor(i / 4 / width);
      }
    }
    return { count, x: x / count, y: y / count };
  }, canvas, [red, green, blue], most);

// Where the middle of the sheet is in the window.
export const middle = (page) =>
  page.$eval('#sheet', (sheet) => {
    const box = sheet.getBoundingClientRect();
    return { x: box.x + box.width / 2, y: box.y + box.height / 2, width: box.width, height: box.height };
  });

export const textOf = (page, selector) => page.$eval(selector, (element) => element.textContent);

// The coordinates that the page shows for a place in the window.
export const coordinatesAt = async (page, x, y) => {
  await page.mouse.move(x - 1, y);
  await page.mouse.move(x, y);
  return (await textOf(page, '#place')).split(',').map(parseFloat);
};

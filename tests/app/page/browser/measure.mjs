// Prints how long pages of a million vertices take in a browser without a graphics card.
//
// usage: DXF2D=build/release/bin/dxf2d node tests/app/page/browser/measure.mjs
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { Pages } from './pages.mjs';

// Wriggling polylines of so many vertices on a plan of 1000 by 700, in seven layers and 250 colors.
function wriggles(count, vertices) {
  let seed = 1;
  const random = () => {
    seed = (seed * 48271) % 2147483647;
    return seed / 2147483647;
  };
  const parts = ['  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n'];
  for (let i = 0; i < count; i++) {
    parts.push(`  0\nLWPOLYLINE\n  8\nL${i % 7}\n 62\n${1 + (i % 250)}\n 90\n${vertices}\n 70\n0\n`);
    let x = random() * 1000;
    let y = random() * 700;
    let angle = random() * 6.28;
    for (let v = 0; v < vertices; v++) {
      parts.push(` 10\n${x.toFixed(5)}\n 20\n${y.toFixed(5)}\n`);
      angle += random() * 0.8 - 0.4;
      x += 0.35 * Math.cos(angle);
      y += 0.35 * Math.sin(angle);
    }
  }
  parts.push('  0\nENDSEC\n  0\nEOF\n');
  return parts.join('');
}

// Milliseconds until the first picture is drawn, and of the frame after each key; the pixels are read,
// so that none is left to be drawn later.
async function measure(page) {
  return page.evaluate(async () => {
    const first = performance.getEntriesByName('first picture')[0].duration;
    const frames = [];
    for (const key of ['ArrowLeft', 'ArrowRight', '0', 'ArrowUp', 'ArrowDown', '0']) {
      await new Promise((rested) => {
        setTimeout(rested, 300);
      });
      const began = performance.now();
      document.getElementById('sheet').dispatchEvent(new KeyboardEvent('keydown', { key, bubbles: true }));
      await new Promise((shown) => {
        requestAnimationFrame(shown);
      });
      document.getElementById('picture').getContext('2d').getImageData(0, 0, 1, 1);
      frames.push(performance.now() - began);
    }
    return { first, frames };
  });
}

const pages = new Pages();
await pages.open();
console.log('polylines  vertices each  page, MB  first picture, ms  frame: median, longest, ms');
for (const [count, vertices] of [[1000, 1000], [20000, 50], [100000, 10], [250000, 4]]) {
  const drawing = join(pages.directory, 'million.dxf');
  writeFileSync(drawing, wriggles(count, vertices));
  const file = pages.make(drawing);
  const page = await pages.show(file);
  const { first, frames } = await measure(page);
  frames.sort((a, b) => a - b);
  const megabytes = (await page.evaluate(() => performance.getEntriesByType('navigation')[0].decodedBodySize)) / 1e6;
  const cells = [count, vertices, megabytes.toFixed(1), first.toFixed(0), `${frames[3].toFixed(0)}, ${frames[5].toFixed(0)}`];
  console.log(cells.map((cell, i) => String(cell).padStart([9, 13, 8, 17, 18][i])).join('  '));
  await page.close();
}
await pages.close();

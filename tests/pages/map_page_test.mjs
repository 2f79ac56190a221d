// The map of patients in a real browser, without a network: what the library wrote is what is seen.
// Leaves out/pages/map.png.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { chromium } from 'playwright-core';

const root = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');
const bin = path.join(root, 'build/native/bin');
const practice = mkdtempSync(path.join(tmpdir(), 'kova-map-'));

/// Writes the page for patients with those codes, as the library does.
function makePage(codes) {
  const app = path.join(practice, 'app.ini');
  writeFileSync(app, `[GLOBAL]\r\nDATABASE=${practice}\\\r\n`);
  execFileSync(path.join(bin, 'kovacall'), ['--app', app, 'CallPostToMap', ...codes], {
    env: { ...process.env, ASAN_OPTIONS: 'detect_leaks=0' },
  });
  return pathToFileURL(path.join(bin, 'map.htm')).href;
}

async function open(browser, url) {
  const context = await browser.newContext({ viewport: { width: 1200, height: 800 }, locale: 'ja-JP' });
  await context.setOffline(true);
  const page = await context.newPage();
  const trouble = [];
  page.on('console', (message) => message.type() === 'error' && trouble.push(message.text()));
  page.on('pageerror', (error) => trouble.push(String(error)));
  page.on('request', (request) => request.url().startsWith('file:') || request.url().startsWith('data:') ||
    trouble.push(`request to ${request.url()}`));
  await page.goto(url);
  return { page, trouble };
}

const rows = (page) => page.$$eval('#places tr', (all) => all.map((row) => row.innerText.replace(/\s+/g, ' ').trim()));

execFileSync(path.join(bin, 'kovacall'), ['create-db', practice]);
const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
try {
  // 25 and 12 patients in two towns, 5 and 1 in two others, and some that no list knows.
  const codes = [...Array(25).fill('101-0051'), ...Array(12).fill('1010021'), ...Array(5).fill('２'), '1000011',
    ...Array(5).fill('102-0072'), '999', ''];
  let { page, trouble } = await open(browser, makePage(codes));
  assert.deepEqual(await rows(page), ['千代田区神田神保町 25 人', '千代田区外神田 12 人', '千代田区飯田橋 5 人', '千代田区内幸町 1 人']);
  assert.equal(await page.innerText('#total'), '43 人');
  const shown = await page.evaluate(() => {
    const circles = [];
    map.eachLayer((layer) => layer instanceof L.CircleMarker && circles.push(
      [layer.options.color, layer.getLatLng().lat, layer.getLatLng().lng]));
    return { circles, zoom: map.getZoom(), centre: [map.getCenter().lat, map.getCenter().lng] };
  });
  assert.deepEqual(shown.circles.map((circle) => circle[0]).sort(), ['#5050ff', '#509950', '#ff2020', '#ff8000']);
  assert.equal(shown.zoom, 12);
  assert.ok(Math.abs(shown.centre[0] - (35.701 + 35.670) / 2) < 1e-3 && Math.abs(shown.centre[1] - (139.747 + 139.770) / 2) < 1e-3);
  // By keyboard alone: to a marker, and its numbers.
  await page.focus('.leaflet-marker-icon');
  await page.keyboard.press('Enter');
  await page.waitForSelector('.leaflet-popup-content');
  assert.match(await page.innerText('.leaflet-popup-content'), /\d+ 人$/);
  assert.match(await page.evaluate(() => csvOf(places)), /^地域,人数\r\n"千代田区神田神保町",25\r\n/);
  assert.deepEqual((await page.$$eval('.number', (all) => all.map((each) => each.innerText))).sort(), ['1', '12', '25', '5']);
  mkdirSync(path.join(root, 'out/pages'), { recursive: true });
  await page.screenshot({ path: path.join(root, 'out/pages/map.png') });
  assert.deepEqual(trouble, []);

  ({ page, trouble } = await open(browser, makePage(['999'])));
  assert.deepEqual(await rows(page), []);
  assert.ok(await page.isVisible('#empty'));
  assert.deepEqual(trouble, []);
} finally {
  await browser.close();
  rmSync(practice, { recursive: true });
}

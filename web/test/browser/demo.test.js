/// The demo page in Chromium, as its own server hands it out.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { join } from 'node:path';
import { after, afterEach, before, beforeEach, test } from 'node:test';
import { launch, openPage, out, root, workersEnd } from './support/lab.js';

let server, url, browser, page;
before(async () => {
  server = spawn('node', [join(root, 'web/demo/serve.mjs'), '0'], { stdio: ['ignore', 'pipe', 'inherit'] });
  const [line] = await once(server.stdout.setEncoding('utf8'), 'data');
  url = line.trim();
  assert.match(url, /^http:\/\/127\.0\.0\.1:\d+\/$/);
  browser = await launch();
});
after(async () => {
  await browser?.close();
  server.kill('SIGTERM');
  if (server.exitCode === null) await once(server, 'exit');
  assert.equal(server.exitCode, 0);
});
beforeEach(async () => {
  page = await openPage(browser, url, { ready: 'document.querySelector(".layer.result canvas")' });
});
afterEach(async () => {
  const { complaints, addresses } = page;
  await page.close();
  assert.deepEqual(complaints, []);
  assert.ok(addresses.length > 10);
  assert.deepEqual(addresses.filter((address) => !/^(blob|data):/.test(address) && !address.startsWith(url)), []);
});

/** What stands in the result, once it is another picture than `before`; times out where it stays. */
const pictureAfter = (before) => page.waitForFunction((before) => {
  const shown = document.querySelector('.layer.result :is(canvas, video)');
  if (!shown) return false;
  const canvas = new OffscreenCanvas(64, 64);
  const context = canvas.getContext('2d');
  context.drawImage(shown, 0, 0, 64, 64);
  const text = context.getImageData(0, 0, 64, 64).data.join();
  return text !== before && text;
}, { timeout: 5000 }, before).then((handle) => handle.jsonValue());

const textOf = (selector) => page.$eval(selector, (element) => element.textContent);

/** Sets a member of the form as a hand does. */
const move = (name, value) => page.$eval(`#look [name="${name}"]`, (input, value) => {
  input.value = value;
  input.dispatchEvent(new Event('input', { bubbles: true }));
}, value);

const give = async (selector, file) => (await page.$(selector)).uploadFile(file);

test('every setting changes the sample picture, and reset brings it back', async () => {
  const first = await pictureAfter('');
  let picture = first;
  for (const [name, value] of [['softening', 0], ['evenTone', 1000], ['whitening', 90]]) {
    await move(name, value);
    picture = await pictureAfter(picture);
  }
  await page.click('#look [type="reset"]');
  assert.equal(await pictureAfter(picture), first);
  picture = first;
  const choose = (selector) => page.$eval(`#look ${selector}`, (element) => element.click());
  for (const choice of ['[name="whitenArea"][value="skin"]', '[name="contrast"][value="absolute"]']) {
    await choose(choice);
    picture = await pictureAfter(picture);
  }
  await choose('[name="autoRadius"]');
  picture = await pictureAfter('');
  await move('radius', 104);
  picture = await pictureAfter(picture);
  await give('#table', join(out, 'warm.vlk'));
  picture = await pictureAfter(picture);
  await give('#table', join(out, 'portrait.png'));
  await page.waitForFunction('!document.querySelector("#table-message").hidden');
  assert.match(await textOf('#table-message'), /portrait\.png: .*colour table/);
  assert.equal(await textOf('#table-name'), 'warm.vlk');
});

const openSources = () => page.$$eval('.sources [aria-pressed="true"]', (all) => all.map(({ id }) => id));

test('camera, photo and video are shown one after the other, and what is none is refused with words', async () => {
  const still = await pictureAfter('');
  assert.deepEqual(await openSources(), ['use-sample']);
  await page.click('#use-camera');
  await page.waitForSelector('.layer.result video');
  const moving = await pictureAfter(still);
  await pictureAfter(moving);
  await page.waitForFunction('Number(document.querySelector("#rate").textContent) > 5');
  assert.equal(await textOf('#size'), '1280 × 720');
  assert.deepEqual(await openSources(), ['use-camera']);
  await page.screenshot({ path: join(out, 'demo-camera.png') });
  const other = await browser.newPage();
  await workersEnd(page); // a page that is not seen keeps no camera
  await other.close();
  await page.bringToFront();
  await page.waitForSelector('.layer.result video');
  await give('#file', join(out, 'default.y4m'));
  await page.waitForFunction('!document.querySelector("#message").hidden');
  await give('#file', join(out, 'clip.webm'));
  await page.waitForSelector('#player:not([hidden])');
  await page.waitForFunction('document.querySelector("#size").textContent === "320 × 180"');
  await pictureAfter(await pictureAfter(''));
  await give('#file', join(out, 'portrait.png'));
  await page.waitForSelector('.layer.result canvas');
  await page.waitForFunction('document.querySelector("#size").textContent === "512 × 512"');
  await workersEnd(page, 1);
  assert.deepEqual(await openSources(), ['choose-file']);
});

test('everything is reached by keyboard, also on a phone, in light and dark', async () => {
  for (const [width, scheme] of [[1280, 'light'], [1280, 'dark'], [360, 'light'], [360, 'dark']]) {
    await page.setViewport({ width, height: 800 });
    await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: scheme }]);
    assert.ok((await page.evaluate(() => document.documentElement.scrollWidth)) <= width, `${width} pixels`);
    await page.screenshot({ path: join(out, `demo-${width}-${scheme}.png`), fullPage: width < 1000 });
  }
  const wanted = await page.$$eval('button, input, select, [tabindex="0"]', (all) => all
    .filter((element) => element.checkVisibility() && !element.disabled)
    .filter(({ type, checked }) => type !== 'radio' || checked)
    .map((element) => element.id || element.name || element.textContent));
  const reached = new Set();
  for (let i = 0; i < wanted.length + 3; ++i) {
    await page.keyboard.press('Tab');
    reached.add(await page.evaluate(() => {
      const { id, name, textContent } = document.activeElement;
      return id || name || textContent;
    }));
  }
  assert.deepEqual(wanted.filter((name) => !reached.has(name)), []);
  await page.focus('#divider');
  await page.keyboard.press('Home');
  await page.keyboard.press('ArrowRight');
  assert.equal(await page.$eval('#divider', (element) => element.ariaValueNow), '1');
  // On the phone's width a caption is whole or out of sight.
  const captions = () => page.$$eval('.caption', (all) => all.map((caption) => {
    const [room, { left, right, top }] = [caption, caption.lastChild].map((element) => element.getBoundingClientRect());
    return top >= room.bottom ? 'hidden' : left >= room.left && right <= room.right;
  }));
  assert.deepEqual(await captions(), ['hidden', true]);
  for (let i = 0; i < 9; ++i) await page.keyboard.press('PageUp');
  assert.deepEqual(await captions(), [true, 'hidden']);
  await page.keyboard.press('b');
  assert.equal(await page.$eval('#show-original', (element) => element.ariaPressed), 'true');
});

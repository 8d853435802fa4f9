/// A browser with a camera, a server, and pages that collect what goes wrong in them.
import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import { readFile } from 'node:fs/promises';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { after, afterEach, before, beforeEach } from 'node:test';
import puppeteer from 'puppeteer-core';
import { serve } from './server.js';

export const root = fileURLToPath(new URL('../../../../', import.meta.url));
/** What scripts/try_web_browsers.sh has made: clips, the package as it is installed, a built page. */
export const out = join(root, 'out/web');
const installed = join(out, 'project/node_modules/vlvk-makeup');

const CHROMIUM = [
  '--no-sandbox', '--disable-gpu', '--use-fake-device-for-media-stream', '--use-fake-ui-for-media-stream',
  `--use-file-for-fake-video-capture=${join(out, 'camera.y4m')}`, '--autoplay-policy=no-user-gesture-required',
  '--js-flags=--expose-gc', '--enable-precise-memory-info'
];

const BROWSERS = {
  chrome: { executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium', args: CHROMIUM },
  firefox: {
    executablePath: process.env.FIREFOX ?? '/usr/bin/firefox-esr',
    extraPrefsFirefox: {
      'media.navigator.streams.fake': true, 'media.navigator.permission.disabled': true,
      'media.autoplay.default': 0, 'media.autoplay.block-webaudio': false
    }
  }
};

/** Addresses of the package's entries, by the names under which a project imports them. */
async function entries() {
  const { exports } = JSON.parse(await readFile(join(installed, 'package.json'), 'utf8'));
  const fileOf = (entry) => (typeof entry === 'string' ? entry : entry.default);
  const pairs = Object.entries(exports).map(([name, entry]) => [
    join('/exports', name === '.' ? 'index.js' : name), join('/package', fileOf(entry))
  ]);
  return Object.fromEntries(pairs);
}

/** @param {{csp?: string, folders?: Record<string, string>}} [options] */
export async function serveLab({ csp, folders } = {}) {
  const site = fileURLToPath(new URL('../site/', import.meta.url));
  return serve({ '/': site, '/package/': installed, '/clips/': out, ...folders }, { csp, redirects: await entries() });
}

/** @param {'chrome' | 'firefox'} [name] */
export async function launch(name = 'chrome') {
  return puppeteer.launch({ browser: name, headless: true, protocolTimeout: 30000, ...BROWSERS[name] });
}

/**
 * A page whose window has what site/page.js exports.
 *
 * @param {import('puppeteer-core').Browser} browser
 * @param {string} url
 * @param {{without?: string[], ready?: string}} [options]  names that the page's browser shall not have; what is true
 *     when the page has begun
 */
export async function openPage(browser, url, { without = [], ready = 'window.ready' } = {}) {
  const page = await browser.newPage();
  page.setDefaultTimeout(30000);
  const complaints = [];
  const complain = (message) => complaints.push(message.text());
  const addresses = [];
  page.on('request', (request) => addresses.push(request.url()));
  page.on('console', (message) => ['error', 'warn'].includes(message.type()) && complain(message));
  page.on('pageerror', (error) => complaints.push(String(error?.message ?? error)));
  // What the browser itself says in a worker comes this way only.
  page.on('workercreated', (worker) => {
    if (browser.protocol !== 'cdp') return;
    worker.client.on('Log.entryAdded', ({ entry }) => complaints.push(entry.text));
    worker.client.send('Log.enable').catch(() => {});
  });
  if (without.length) {
    await page.evaluateOnNewDocument((names) => {
      for (const name of names) delete window[name];
    }, without);
  }
  await page.goto(url);
  await page.waitForFunction(ready);
  return Object.assign(page, { complaints, addresses });
}

/** Waits until a page's workers are gone, but for some. */
export async function workersEnd(page, left = 0) {
  for (let i = 0; page.workers().length !== left; ++i) {
    if (i === 100) throw new Error(`${page.workers().length} workers go on`);
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
}

/** The frames of a Y4M without planes of odd size, each as a hash. */
export async function hashesOfClip(name) {
  const file = await readFile(join(out, name));
  const [header] = file.subarray(0, 200).toString('latin1').split('\n');
  const [, width, height] = header.match(/ W(\d+) H(\d+) /);
  const hashes = [];
  for (let at = header.length + 1; at < file.length; ) {
    at = file.indexOf('\n', at) + 1; // past FRAME
    const end = at + (width * height * 3) / 2;
    hashes.push(createHash('sha256').update(file.subarray(at, end)).digest('hex'));
    at = end;
  }
  return hashes;
}

/** What portrait.png is made with, and warm.y4m, that with warm.vlk: other than the default in every member. */
export const WARM = {
  whitening: 80, softening: 600, radius: 13, contrast: 'absolute', whitenArea: 'skin', evenTone: 500
};

/**
 * A browser and a server for all tests of a file, and a page for each, in which nothing may go wrong unsaid.
 *
 * @param {'chrome' | 'firefox'} [name]
 */
export function setUp(name = 'chrome') {
  const lab = {};
  before(async () => {
    lab.server = await serveLab();
    lab.browser = await launch(name);
  });
  after(async () => {
    await lab.browser?.close();
    await lab.server?.close();
  });
  beforeEach(async () => {
    lab.page = await openPage(lab.browser, lab.server.url);
  });
  afterEach(async () => {
    const { complaints } = lab.page;
    await lab.page.close();
    assert.deepEqual(complaints, []);
  });
  return lab;
}

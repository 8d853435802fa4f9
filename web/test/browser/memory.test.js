/// Two thousand frames in Chromium: memory stays, and all frames are closed.
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { test } from 'node:test';
import { openPage, setUp } from './support/lab.js';

const lab = setUp();

/** The browser looks for frames that were lost every ten seconds. */
const LOST_FRAMES_ARE_REPORTED = 11500;
const LOST = /VideoFrame was garbage collected/;
const SIZE = [320, 240];

/** Megabytes in memory of the process in which the page and its workers live. */
async function residentOf(page) {
  const client = await page.browser().target().createCDPSession();
  const { processInfo } = await client.send('SystemInfo.getProcessInfo');
  await client.detach();
  const sizes = processInfo.filter(({ type }) => type === 'renderer').map(async ({ id }) => {
    const pages = (await readFile(`/proc/${id}/statm`, 'latin1')).split(' ')[1];
    return (pages * 4096) / 2 ** 20;
  });
  return Math.max(...(await Promise.all(sizes)));
}

test('2,000 frames of a track and 2,000 single ones leave memory as it was, and no frame open', async (context) => {
  const { page } = lab;
  await page.evaluate(async () => {
    window.drawn = source();
    window.made = await createBeautyTrack(drawn.track, { workerUrl: 'lab_worker.js' });
    window.beautifier = await Beautifier.create({ workerUrl: 'lab_worker.js' });
    // One after the other, so that none is dropped.
    const reader = new MediaStreamTrackProcessor({ track: made.track }).readable.getReader();
    window.pass = async (count, [width, height]) => {
      for (let i = 0; i < count; ++i) {
        await drawn.write(width, height, i);
        (await reader.read()).value.close();
        const result = await beautifier.process(new VideoFrame(paint(width, height, i), { timestamp: i }));
        result.close();
      }
    };
  });
  const measure = async () => {
    await page.evaluate(() => collect());
    const modules = await Promise.all(page.workers().map((worker) => worker.evaluate(() => {
      gc();
      return instruments.memory.buffer.byteLength / 2 ** 20;
    })));
    const heap = await page.evaluate(() => performance.memory.usedJSHeapSize / 2 ** 20);
    return { modules, heap, resident: await residentOf(page) };
  };
  await page.evaluate((size) => pass(200, size), SIZE);
  const before = await measure();
  await page.evaluate((size) => pass(2000, size), SIZE);
  const after = await measure();
  context.diagnostic(`MiB before and after: ${JSON.stringify([before, after])}`);
  // Numbers of a track come after its frames.
  await page.waitForFunction(() => made.stats.frames === 2200 && beautifier.stats.frames === 2200, { timeout: 5000 });
  assert.deepEqual(after.modules, before.modules);
  assert.ok(after.heap < before.heap + 2);
  assert.ok(after.resident < before.resident + 100, 'a frame has 0.3 MiB');

  // Frames that are dropped, refused, or given after the end.
  await Promise.all(page.workers().map((worker) => worker.evaluate(() => (instruments.delay = 30))));
  await page.evaluate(async (size) => {
    for (let i = 0; i < 100; ++i) await drawn.write(...size, i);
    beautifier.close();
    await wordsOf(() => beautifier.process(new VideoFrame(paint(...size), { timestamp: 0 })));
    for (const wasmUrl of ['none.wasm', 'empty.wasm']) {
      await wordsOf(() => createBeautyTrack(drawn.track, { wasmUrl }));
    }
  }, SIZE);
  const lost = ({ complaints }) => complaints.filter((text) => LOST.test(text)).length;
  // Next to it a page and a worker that lose frames, to see that it is seen.
  const careless = await openPage(lab.browser, lab.server.url);
  await careless.evaluate(async () => void (window.beautifier = await Beautifier.create()));
  const lose = () => {
    const canvas = new OffscreenCanvas(8, 8);
    canvas.getContext('2d');
    for (let i = 0; i < 20; ++i) new VideoFrame(canvas, { timestamp: 0 });
  };
  await Promise.all([careless, ...careless.workers()].map((place) => place.evaluate(lose)));
  const collectAndWait = async (wait) => {
    gc();
    await new Promise((resolve) => setTimeout(resolve, wait));
  };
  const places = [page, careless].flatMap((each) => [each, ...each.workers()]);
  await Promise.all(places.map((place) => place.evaluate(collectAndWait, LOST_FRAMES_ARE_REPORTED)));
  assert.ok(lost(careless) >= 2, 'in the page and in the worker');
  assert.equal(lost(page), 0);
  await careless.close();
  page.complaints.length = 0; // of the module that is not there
});

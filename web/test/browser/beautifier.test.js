/// Frames and pictures one by one, in Chromium.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { WARM, hashesOfClip, setUp } from './support/lab.js';

const lab = setUp();

test('a result keeps format, size, times and colour space, and has the samples that the program gives it', async () => {
  const found = await lab.page.evaluate(async () => {
    const beautifier = await Beautifier.create();
    const samples = await firstOfClip();
    const describe = (frame) => {
      const { format, visibleRect, displayWidth, displayHeight, rotation, timestamp, duration, colorSpace } = frame;
      const size = [visibleRect.width, visibleRect.height, displayWidth, displayHeight, rotation];
      return JSON.stringify({ format, size, timestamp, duration, colorSpace });
    };
    const run = async (init) => {
      const frame = new VideoFrame(samples, { timestamp: 12345, duration: 33333, ...init });
      const before = [describe(frame), await hashOf(await bytesOf(frame))];
      const result = await beautifier.process(frame);
      const after = [describe(result), await hashOf(await bytesOf(result))];
      result.close();
      return { before, after, closed: frame.format === null };
    };
    const space = (name, fullRange) => ({ matrix: name, primaries: name, transfer: name, fullRange });
    const results = [
      await run({ format: 'I420', codedWidth: 1280, codedHeight: 720, colorSpace: space('smpte170m', false) })
    ];
    const part = { visibleRect: { x: 32, y: 16, width: 101, height: 77 }, displayWidth: 202, displayHeight: 154 };
    for (const format of ['I420', 'NV12', 'RGBA', 'BGRA', 'RGBX', 'BGRX']) {
      const colorSpace = ['I420', 'NV12'].includes(format) ? space('bt709', true) : undefined;
      const init = { format, codedWidth: 320, codedHeight: 180, colorSpace };
      results.push(await run(init), await run({ ...init, ...part }), await run({ ...init, ...part, rotation: 90 }));
    }
    beautifier.close();
    return results;
  });
  assert.equal(found[0].after[1], (await hashesOfClip('default.y4m'))[0]);
  for (const { before, after, closed } of found) {
    assert.equal(after[0], before[0]);
    assert.ok(after[1] !== before[1] && closed, before[0]);
  }
});

test('pixels are those of the program, and the picture that was given stays', async () => {
  const [same, kept, size] = await lab.page.evaluate(async (look) => {
    const pixelsOf = async (url) => {
      const picture = await createImageBitmap(await (await fetch(url)).blob(), { colorSpaceConversion: 'none' });
      const context = new OffscreenCanvas(picture.width, picture.height).getContext('2d');
      context.drawImage(picture, 0, 0);
      return context.getImageData(0, 0, picture.width, picture.height);
    };
    const [original, wanted] = await Promise.all(['/clips/original.png', '/clips/portrait.png'].map(pixelsOf));
    const before = await hashOf(original.data);
    const beautifier = await Beautifier.create({ look });
    const result = await beautifier.processPixels(original);
    const isSame = (await hashOf(result.data)) === (await hashOf(wanted.data));
    return [isSame, (await hashOf(original.data)) === before, result.width];
  }, WARM);
  assert.deepEqual([same, kept, size], [true, true, 512]);
});

test('a stream of frames passes through transform, in order, and a new look counts from then on', async () => {
  const { times, dark, bright } = await lab.page.evaluate(async () => {
    const beautifier = await Beautifier.create({ look: { whitening: 0 } });
    const times = [];
    const sums = [];
    const frames = new ReadableStream({
      start: (controller) => {
        for (let i = 0; i < 8; ++i) controller.enqueue(new VideoFrame(paint(64, 48), { timestamp: i }));
        controller.close();
      }
    });
    const results = frames.pipeThrough(beautifier.transform()).getReader();
    for (let next = await results.read(); !next.done; next = await results.read()) {
      times.push(next.value.timestamp);
      sums.push((await bytesOf(next.value)).reduce((sum, byte) => sum + byte, 0));
      next.value.close();
      beautifier.look = { whitening: 100 };
    }
    return { times, dark: sums[0], bright: sums.at(-1) };
  });
  assert.deepEqual(times, [0, 1, 2, 3, 4, 5, 6, 7]);
  assert.ok(bright > dark);
});

test('after close, and of what is no frame, there are words', async () => {
  const said = await lab.page.evaluate(async () => {
    const beautifier = await Beautifier.create();
    const closed = new VideoFrame(paint(8, 8), { timestamp: 0 });
    closed.close();
    const said = [await wordsOf(() => beautifier.process({})), await wordsOf(() => beautifier.process(closed))];
    said.push(await wordsOf(() => beautifier.processPixels(new Uint8Array(4))));
    const under = beautifier.process(new VideoFrame(paint(1920, 1080), { timestamp: 0 }));
    beautifier.close();
    beautifier.close();
    const frame = new VideoFrame(paint(8, 8), { timestamp: 0 });
    said.push(await wordsOf(() => under), await wordsOf(() => beautifier.process(frame)), String(frame.format));
    said.push(await wordsOf(() => beautifier.processPixels(new ImageData(2, 2))));
    return said;
  });
  const wanted = [/not a VideoFrame/, /closed/, /not an ImageData/, /closed/, /closed/, /^null$/, /closed/];
  said.forEach((words, i) => assert.match(words, wanted[i]));
});

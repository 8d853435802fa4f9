/// Tracks of a camera in Chromium.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { WARM, hashesOfClip, openPage, setUp, workersEnd } from './support/lab.js';

const lab = setUp();

for (const wasmUrl of [undefined, 'exports/scalar.wasm']) {
  test(`frames equal the program's, and a new look lands: ${wasmUrl ?? 'own module'}`, async () => {
    const [plain, warm] = await Promise.all(['default.y4m', 'warm.y4m'].map(hashesOfClip));
    lab.server.requests.length = 0;
    const found = await lab.page.evaluate(async (wasmUrl, look) => {
      const made = await createBeautyTrack(await camera(), { wasmUrl });
      const hashes = [];
      await watch(made.track, async (frame, index) => {
        hashes.push([frame.format, await hashOf(await bytesOf(frame))].join(' '));
        if (index === 19) made.look = { ...look, table: await (await fetch('/clips/warm.vlk')).arrayBuffer() };
        return index === 44 ? true : undefined;
      });
      return hashes;
    }, wasmUrl, WARM);
    const kinds = found.map((hash) => {
      const clip = [plain, warm].findIndex((hashes) => hashes.includes(hash.replace('I420 ', '')));
      return ['plain', 'warm'][clip] ?? hash;
    });
    const change = kinds.indexOf('warm');
    assert.ok(change >= 20 && change < 30, `the look landed at frame ${change}`);
    assert.deepEqual(kinds, [...Array(change).fill('plain'), ...Array(45 - change).fill('warm')]);
    assert.ok(new Set(found).size > 25, 'the clip moves');
    const modules = lab.server.requests.filter((path) => /^\/package\/.*\.wasm$/.test(path));
    assert.match(modules.join(), wasmUrl ? /^[^,]*scalar\.wasm$/ : /^[^,]*simd\.wasm$/);
  });
}

test('a bad look throws, names the member, and changes nothing', async () => {
  const [words, look, untouched] = await lab.page.evaluate(async () => {
    const made = await createBeautyTrack(await camera(), { look: { whitening: 30 } });
    const bad = [
      { whitening: 101 }, { softening: -1 }, { radius: 1.5 }, { contrast: 'high' }, { whitenArea: 'lips' },
      { evenTone: Number.NaN }, { table: new Uint8Array(9) }, { whitenning: 3 }, null
    ];
    const words = [];
    for (const look of bad) words.push(await wordsOf(() => (made.look = look)));
    return [words, made.look, await framesCome(made.track)];
  });
  const names = ['whitening', 'softening', 'radius', 'contrast', 'whitenArea', 'evenTone', 'table', 'whitenning', ''];
  words.forEach((said, i) => assert.match(said, new RegExp(`^${names[i] ? 'Range' : 'Type'}Error: look.*${names[i]}`)));
  assert.equal(look.whitening, 30);
  assert.ok(untouched);
});

test('stop, abort and the end of the input end the track and the worker, and leave the camera', async () => {
  const ends = await lab.page.evaluate(async () => {
    const results = [];
    for (const end of ['stop', 'abort', 'input', 'early']) {
      const input = await camera();
      const abort = new AbortController();
      const made = await createBeautyTrack(input, { signal: abort.signal });
      if (end !== 'early') await framesCome(made.track); // else the streams are still on their way
      const ended = watch(made.track, () => undefined); // until the end
      if (end === 'stop') made.stop();
      else if (end === 'abort') abort.abort();
      else input.stop();
      const outcome = await Promise.race([made.closed.then(() => 'resolved', () => 'rejected'), pause(5000)]);
      await ended;
      made.stop();
      made.stop();
      const goesOn = input.readyState === 'live' && (await framesCome(input));
      results.push([end, outcome, made.track.readyState, goesOn]);
      input.stop();
    }
    return results;
  });
  assert.deepEqual(ends, [
    ['stop', 'resolved', 'ended', true], ['abort', 'resolved', 'ended', true], ['input', 'resolved', 'ended', false],
    ['early', 'resolved', 'ended', false]
  ]);
  await workersEnd(lab.page);
  const aborted = await lab.page.evaluate(async () => {
    const input = await camera();
    const early = await wordsOf(() => createBeautyTrack(input, { signal: AbortSignal.abort() }));
    const abort = new AbortController();
    const making = createBeautyTrack(input, { signal: abort.signal });
    abort.abort(new Error('changed my mind'));
    return [early, await wordsOf(() => making), await framesCome(input)];
  });
  assert.match(aborted[0], /^AbortError/);
  assert.deepEqual(aborted.slice(1), ['Error: changed my mind', true]);
  await workersEnd(lab.page);
});

test('sizes change in the middle, and the camera is switched', async () => {
  const [camera, drawn] = await lab.page.evaluate(async () => {
    const sizeOf = (track, width) => watch(track, ({ displayWidth, displayHeight }, index) =>
      displayWidth === width || index === 60 ? [displayWidth, displayHeight] : undefined);
    const sizes = [];
    const first = await camera();
    const made = await createBeautyTrack(first);
    for (const width of [1280, 640, 320, 1280]) {
      await first.applyConstraints({ width, height: (width * 9) / 16 });
      sizes.push(await sizeOf(made.track, width));
    }
    made.stop();
    first.stop();
    const second = await camera({ width: 960, height: 720 });
    const next = await createBeautyTrack(second);
    sizes.push(await sizeOf(next.track, 960));
    next.stop();

    const drawn = source();
    const odd = await createBeautyTrack(drawn.track);
    const oddSizes = [];
    for (const [width, height] of [[320, 240], [641, 361], [16, 9], [1, 1], [640, 480]]) {
      let size;
      sizeOf(odd.track, width).then((found) => (size = found));
      for (let i = 0; i < 200 && !size; ++i) {
        await drawn.write(width, height, i);
        await pause(30);
      }
      oddSizes.push(size);
    }
    return [sizes, oddSizes];
  });
  assert.deepEqual(camera, [[1280, 720], [640, 360], [320, 180], [1280, 720], [960, 720]]);
  assert.deepEqual(drawn, [[320, 240], [641, 361], [16, 9], [1, 1], [640, 480]]);
});

test('an input that is stopped at once ends the track', async () => {
  const state = await lab.page.evaluate(async () => {
    const input = await camera();
    const made = await createBeautyTrack(input);
    input.stop();
    await Promise.race([made.closed, pause(5000)]);
    return made.track.readyState;
  });
  assert.equal(state, 'ended');
  await workersEnd(lab.page);
});

test('a hidden page goes on, and comes back without a queue', async () => {
  const start = () => lab.page.evaluate(async () => {
    window.made = await createBeautyTrack(await camera(), { workerUrl: 'lab_worker.js' });
    await framesCome(made.track, 10);
    return made.stats.frames;
  });
  const memory = () => lab.page.workers()[0].evaluate(() => instruments.memory.buffer.byteLength);
  const frames = await start();
  const bytes = await memory();
  const other = await openPage(lab.browser, lab.server.url);
  await other.bringToFront();
  assert.equal(await lab.page.evaluate(() => document.visibilityState), 'hidden');
  const hidden = await lab.page.evaluate(async () => {
    await pause(1500);
    return made.stats.frames;
  });
  assert.ok(hidden > frames + 5, `${hidden - frames} frames while hidden`);
  await lab.page.bringToFront();
  assert.ok(await lab.page.evaluate(() => framesCome(made.track, 10)));
  assert.equal(await memory(), bytes);
  await other.close();
});

test('frames that come too late are dropped and counted, not queued', async () => {
  const delay = () => Promise.all(lab.page.workers().map((worker) => worker.evaluate(() => (instruments.delay = 100))));
  await lab.page.evaluate(async () => {
    window.drawn = source();
    window.made = await createBeautyTrack(drawn.track, { workerUrl: 'lab_worker.js' });
  });
  await delay();
  const [ages, written] = await lab.page.evaluate(async () => {
    const ages = [];
    watch(made.track, ({ timestamp }) => void ages.push(performance.now() - timestamp / 1000));
    let written = 0;
    for (const begin = performance.now(); performance.now() < begin + 2000; ++written) {
      await drawn.write(320, 240, written, Math.round(performance.now() * 1000));
      await pause(10);
    }
    return [ages, written];
  });
  assert.ok(ages.length >= 5 && written > 3 * ages.length, `${ages.length} of ${written} frames came out`);
  assert.ok(Math.max(...ages) < 1000, `a frame was ${Math.max(...ages)} ms old`);

  await lab.page.evaluate(async () => {
    made.stop();
    window.made = await createBeautyTrack(await camera(), { workerUrl: 'lab_worker.js' });
  });
  await delay();
  const [early, late] = await lab.page.evaluate(async () => {
    await pause(500);
    const early = made.stats;
    await pause(1500);
    return [early, made.stats];
  });
  const frames = late.frames - early.frames;
  const dropped = late.dropped - early.dropped;
  assert.ok(dropped > frames && frames + dropped < 60, `${frames} frames, ${dropped} dropped`);
});

test('30 frames a second at 720p', async (context) => {
  const stats = await lab.page.evaluate(async () => {
    const made = await createBeautyTrack(await camera());
    await pause(3000);
    return made.stats;
  });
  const { frames, dropped, milliseconds } = stats;
  context.diagnostic(`720p, 3 s: ${frames} frames, ${dropped} dropped, ${milliseconds.toFixed(1)} ms in the engine`);
  assert.ok(frames > 20 && milliseconds > 0);
});

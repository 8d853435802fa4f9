/// What goes wrong, in Chromium: bad addresses, workers that die, browsers and pages that lack something.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { STRICT } from './support/server.js';
import { openPage, serveLab, setUp, workersEnd } from './support/lab.js';

const lab = setUp();

test('a bad module, worker or track is refused with words, and keeps no frame of the camera', async () => {
  const [said, live] = await lab.page.evaluate(async () => {
    const input = await camera();
    const ended = input.clone();
    ended.stop();
    const audio = new AudioContext().createMediaStreamDestination().stream.getAudioTracks()[0];
    const refused = [
      [input, { wasmUrl: 'none.wasm' }], [input, { wasmUrl: '/page.js' }], [input, { wasmUrl: 'empty.wasm' }],
      [input, { wasmUrl: 'http://[' }], [input, { workerUrl: 'none.js' }], [input, { workerUrl: '/throws.js' }],
      [input, { workerUrl: 'https://elsewhere.example/worker.js' }], [input, { look: { radius: -1 } }],
      [ended, {}], [audio, {}], [undefined, {}]
    ];
    const said = [];
    for (const [track, options] of refused) said.push(await wordsOf(() => createBeautyTrack(track, options)));
    return [said, await framesCome(input, 20)];
  });
  const wanted = [
    /none\.wasm.*404/, /page\.js.*not a WebAssembly module/, /empty\.wasm.*not a module of this package/,
    /wasmUrl.*http:..\[/, /worker.*none\.js/, /worker.*throws\.js/, /worker.*elsewhere/, /look\.radius/,
    /track has ended/, /video track/, /video track/
  ];
  said.forEach((words, i) => assert.match(words ?? 'nothing', wanted[i]));
  assert.ok(live);
  await workersEnd(lab.page);
  lab.page.complaints.length = 0; // the browser's own of what it could not load
});

const deaths = {
  'is closed': [() => self.close(), /worker/],
  throws: [() => void setTimeout(() => { throw new Error('all is lost'); }), /all is lost/],
  'has an engine that traps': [() => void (instruments.trap = true), /engine.*unreachable/],
  'has an engine that refuses all frames': [() => void (instruments.refuse = true), /refused/]
};
for (const [name, [kill, wanted]] of Object.entries(deaths)) {
  test(`a worker that ${name} ends the track and says why`, async () => {
    await lab.page.evaluate(async () => {
      window.made = await createBeautyTrack(await camera(), { workerUrl: 'lab_worker.js' });
      window.beautifier = await Beautifier.create({ workerUrl: 'lab_worker.js' });
      await framesCome(made.track);
      window.ended = new Promise((resolve) => made.track.addEventListener('ended', resolve));
      window.over = watch(made.track, () => undefined);
    });
    await Promise.all(lab.page.workers().map((worker) => worker.evaluate(kill).catch(() => {})));
    const [track, single, state] = await lab.page.evaluate(async () => {
      const track = await wordsOf(() => made.closed);
      await Promise.all([over, ended]);
      const single = await wordsOf(() => beautifier.process(new VideoFrame(paint(64, 64), { timestamp: 0 })));
      return [track, single, made.track.readyState];
    });
    assert.match(track, wanted);
    assert.ok(single);
    assert.equal(state, 'ended');
    lab.page.complaints.length = 0;
  });
}

test('without processors and generators a canvas carries; without anything there are words', async () => {
  const browserWithout = (without) => openPage(lab.browser, lab.server.url, { without });
  const start = async (workerUrl) => {
    const input = await camera();
    const made = await createBeautyTrack(input, { workerUrl });
    const shown = await show(made.track);
    await pause(500);
    const { frames } = made.stats;
    const { width, height } = shown();
    made.stop();
    const words = (await wordsOf(() => made.closed)) ?? null;
    return [frames > 3, [width, height], made.track.readyState, input.readyState, words];
  };
  const canvas = await browserWithout(['MediaStreamTrackProcessor']);
  for (const workerUrl of [undefined, 'lab_worker.js?tracks']) {
    assert.deepEqual(await canvas.evaluate(start, workerUrl), [true, [1280, 720], 'ended', 'live', null]);
    await workersEnd(canvas);
  }
  assert.deepEqual(canvas.complaints, []);
  await canvas.close();
  const lacks = [
    [['MediaStreamTrackGenerator', 'VideoFrame'], /this browser cannot/], [['Worker'], /no workers/],
    [['WebAssembly'], /no WebAssembly/]
  ];
  for (const [without, wanted] of lacks) {
    const bare = await browserWithout(without);
    const words = await bare.evaluate(() => wordsOf(async () => createBeautyTrack(await camera())));
    assert.match(words, wanted);
    await workersEnd(bare);
    await bare.close();
  }
});

test('a page that forbids WebAssembly is refused with words', async () => {
  const server = await serveLab({ csp: STRICT.replace("'wasm-unsafe-eval'", '') });
  const page = await openPage(lab.browser, server.url);
  const words = await page.evaluate(() => wordsOf(async () => createBeautyTrack(await camera())));
  await page.close();
  await server.close();
  assert.match(words, /WebAssembly.*script-src 'wasm-unsafe-eval'/);
});

/// The canvas carrier in Firefox, with the camera that it draws itself.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { hashesOfClip, setUp, workersEnd } from './support/lab.js';

const lab = setUp('firefox');

test('frames of a camera come out by way of a canvas until they are stopped', async (context) => {
  const { stats, size, moves, bad, again, states } = await lab.page.evaluate(async () => {
    const input = await camera({ width: 640, height: 480 });
    const made = await createBeautyTrack(input);
    const look = await show(made.track);
    const pictures = new Set();
    for (let i = 0; i < 20; ++i) {
      await pause(50);
      pictures.add(await hashOf(look().data));
    }
    const { stats } = made;
    const bad = await wordsOf(() => (made.look = { whitening: 200 }));
    const { width, height } = look();
    made.stop();
    made.stop();
    const second = await createBeautyTrack(input);
    await pause(500);
    const again = second.stats.frames;
    const states = [made.track.readyState, input.readyState];
    const third = await createBeautyTrack(input);
    input.stop();
    await Promise.all([second.closed, third.closed]);
    states.push(second.track.readyState, third.track.readyState);
    return { stats, size: [width, height], moves: pictures.size, bad, again, states };
  });
  const { frames, dropped, milliseconds } = stats;
  context.diagnostic(`640x480: ${frames} frames, ${dropped} dropped, ${milliseconds.toFixed(1)} ms in the engine`);
  assert.ok(frames > 10 && moves > 5 && again > 2);
  assert.deepEqual(size, [640, 480]);
  assert.match(bad, /^RangeError: look.whitening/);
  assert.deepEqual(states, ['ended', 'live', 'ended', 'ended']);
  await workersEnd(lab.page);
});

test('colours stay but for what the look changes, and the canvas follows the size', async () => {
  const { original, same, bright, sizes } = await lab.page.evaluate(async () => {
    const canvas = document.createElement('canvas');
    const context = canvas.getContext('2d');
    let seed = 0;
    const draw = setInterval(() => context.drawImage(paint(canvas.width, canvas.height, 40 * ++seed), 0, 0), 30);
    const input = canvas.captureStream().getVideoTracks()[0];
    const made = await createBeautyTrack(input, { look: { whitening: 0, radius: 0 } });
    const [before, after] = [await show(input), await show(made.track)];
    const meanOf = ({ data }) => data.reduce((sum, value) => sum + value, 0) / data.length;
    await pause(500);
    const original = meanOf(before());
    const same = meanOf(after());
    made.look = { whitening: 100, radius: 0 };
    await pause(500);
    const bright = meanOf(after());
    const sizes = [];
    for (const [width, height] of [[160, 90], [401, 301]]) {
      Object.assign(canvas, { width, height });
      await pause(500);
      const shown = after();
      sizes.push([shown.width, shown.height]);
    }
    made.stop();
    clearInterval(draw);
    return { original, same, bright, sizes };
  });
  assert.ok(Math.abs(same - original) < 2 && bright > original + 10, `${original}, ${same}, ${bright}`);
  assert.deepEqual(sizes, [[160, 90], [401, 301]]);
});

test('single frames are exact here as well, and pixels are taken', async () => {
  const [hash, after, closed, size, said] = await lab.page.evaluate(async () => {
    const colorSpace = { matrix: 'smpte170m', primaries: 'smpte170m', transfer: 'smpte170m', fullRange: false };
    const init = { format: 'I420', codedWidth: 1280, codedHeight: 720, timestamp: 7, colorSpace };
    const beautifier = await Beautifier.create();
    const frame = new VideoFrame(await firstOfClip(), init);
    const result = await beautifier.process(frame);
    const hash = await hashOf(await bytesOf(result));
    const { width, height } = await beautifier.processPixels(new ImageData(20, 10));
    const said = await wordsOf(() => createBeautyTrack(undefined));
    beautifier.close();
    return [hash, [result.format, result.timestamp], frame.format, [width, height], said];
  });
  assert.equal(hash, (await hashesOfClip('default.y4m'))[0]);
  assert.deepEqual([after, closed, size], [['I420', 7], null, [20, 10]]);
  assert.match(said, /not a video track/);
});

/// Frames in node: both modules against each other, and against the program.
import assert from 'node:assert/strict';
import { beforeEach, test } from 'node:test';
import { FrameProcessor } from '../src/frame_processor.js';
import { pumpFrames } from '../src/frame_pump.js';
import { FrameTransform } from '../src/frame_transform.js';
import { FakeFrame, pixelFrame, samples, startEngine } from './support.js';

globalThis.VideoFrame = FakeFrame;
beforeEach(() => {
  FakeFrame.all = [];
});

function allClosedOnce(but = []) {
  for (const frame of FakeFrame.all) assert.equal(frame.closed, but.includes(frame) ? 0 : 1, String(frame.timestamp));
}

async function processed(init, bytes) {
  const processor = new FrameProcessor(await startEngine('simd', { whitening: 70 }));
  const frame = new FakeFrame(samples(bytes), init);
  const result = await processor.frame(frame);
  allClosedOnce([result]);
  assert.equal(processor.stats.frames, 1);
  return { frame, result };
}

const coded = { codedWidth: 64, codedHeight: 48, timestamp: 7 };

test('the result is like the frame', async () => {
  const colorSpace = { matrix: 'bt709', fullRange: true, primaries: 'bt709', transfer: 'bt709' };
  const visibleRect = { x: 2, y: 4, width: 31, height: 21 };
  const init = { format: 'NV12', ...coded, visibleRect, displayWidth: 62, displayHeight: 21, duration: 40, colorSpace };
  const { frame, result } = await processed(init, 32 * 22 * 1.5);
  assert.deepEqual(frame.options, { layout: [{ offset: 0, stride: 32 }, { offset: 704, stride: 32 }] });
  const { format, codedWidth, codedHeight, displayWidth, timestamp, duration } = result;
  assert.deepEqual(
    { format, codedWidth, codedHeight, displayWidth, timestamp, duration },
    { format: 'NV12', codedWidth: 32, codedHeight: 22, displayWidth: 62, timestamp: 7, duration: 40 }
  );
  assert.deepEqual(result.visibleRect, { x: 0, y: 0, width: 31, height: 21 });
  assert.deepEqual(result.colorSpace.toJSON(), colorSpace);
});

test('the colour space of a frame becomes matrix and range', async () => {
  const spaces = {
    none: undefined, unknown: { matrix: null, fullRange: null }, limited: { matrix: 'smpte170m', fullRange: false },
    pal: { matrix: 'bt470bg', fullRange: false }, full: { matrix: 'smpte170m', fullRange: true },
    hd: { matrix: 'bt709', fullRange: false }
  };
  const results = {};
  for (const [name, colorSpace] of Object.entries(spaces)) {
    const { result } = await processed({ format: 'I420', ...coded, colorSpace }, 64 * 48 * 1.5);
    results[name] = Buffer.from(result.data);
    FakeFrame.all = [];
  }
  for (const same of ['none', 'unknown', 'pal']) assert.ok(results[same].equals(results.limited), same);
  assert.equal(new Set(['limited', 'full', 'hd'].map((name) => results[name].toString('hex'))).size, 3);
});

test('other formats become pixels, and alpha stays', async () => {
  for (const [format, matrix, becomes] of [
    ['I422', 'bt709', 'RGBX'], ['I444AP10', 'bt709', 'RGBA'], [null, null, 'RGBX'], ['I420', 'bt2020-ncl', 'RGBX']
  ]) {
    const { frame, result } = await processed({ format, ...coded, colorSpace: { matrix } }, 64 * 48 * 4);
    assert.deepEqual([frame.options.format, result.format, result.colorSpace.matrix], [becomes, becomes, 'rgb']);
    FakeFrame.all = [];
  }
  const { frame, result } = await processed({ format: 'I420A', ...coded }, 64 * 48 * 2.5);
  assert.deepEqual(result.data.slice(64 * 48 * 1.5), frame.data.slice(64 * 48 * 1.5));
  assert.notDeepEqual(result.data, frame.data);
});

test('a frame that cannot be read is closed', async () => {
  const processor = new FrameProcessor(await startEngine('simd'));
  const frame = Object.assign(pixelFrame(), { broken: true });
  await assert.rejects(processor.frame(frame), /a frame of the format RGBA cannot be read: no access/);
  allClosedOnce();
});

/** A pump between streams that the test holds; its work waits for `proceed`. */
function startPump({ write = (frame) => frame.close() } = {}) {
  const pump = { out: [], dropped: 0, sent: 0, stop: new AbortController(), proceed: [], cancelled: 0, closed: 0 };
  const readable = new ReadableStream({
    start: (controller) => Object.assign(pump, { input: controller }), cancel: () => void (pump.cancelled += 1)
  });
  const writable = new WritableStream({
    write: (frame) => { pump.out.push(frame.timestamp); write(frame); }, close: () => void (pump.closed += 1)
  });
  const process = async (frame) => {
    const turn = new Promise((resolve, reject) => pump.proceed.push({ resolve, reject }));
    const result = await turn.finally(() => frame.close());
    return result ?? new FakeFrame([], { timestamp: frame.timestamp });
  };
  const work = { process, onDrop: () => (pump.dropped += 1), onFrame: () => (pump.sent += 1) };
  pump.done = pumpFrames(readable, writable, work, pump.stop.signal);
  return pump;
}

// Results are closed by the track and, once more, by the pump, which is harmless; inputs exactly once.
function inputsClosed(frames) {
  assert.deepEqual(frames.map((frame) => frame.closed), frames.map(() => 1));
  assert.ok(FakeFrame.all.every((frame) => frame.closed > 0));
}

const settle = () => new Promise((resolve) => setTimeout(resolve, 5));

test('one frame is in work, the newest waits, the end closes all', async () => {
  const pump = startPump();
  const frames = [1, 2, 3, 4].map(pixelFrame);
  for (const frame of frames) {
    pump.input.enqueue(frame);
    await settle();
  }
  assert.deepEqual([pump.proceed.length, pump.dropped], [1, 2]);
  pump.proceed.shift().resolve();
  await settle();
  pump.proceed.shift().resolve();
  await settle();
  pump.input.close();
  await pump.done;
  assert.deepEqual([pump.out, pump.sent, pump.dropped, pump.closed], [[1, 4], 2, 2, 1]);
  inputsClosed(frames);
});

test('a stop lets frames in work and in waiting go', async () => {
  const pump = startPump();
  const frames = [1, 2].map(pixelFrame);
  for (const frame of frames) pump.input.enqueue(frame);
  await settle();
  pump.stop.abort();
  pump.proceed.shift()?.resolve();
  await pump.done;
  inputsClosed(frames);
  assert.deepEqual([pump.cancelled, pump.closed], [1, 1]);
});

test('the end of the output ends the pump', async () => {
  const pump = startPump({ write: () => { throw new Error('stopped'); } });
  const frame = pixelFrame();
  pump.input.enqueue(frame);
  await settle();
  pump.proceed.shift().resolve();
  await pump.done;
  assert.equal(pump.cancelled, 1);
  inputsClosed([frame]);
});

test('a refused frame is dropped, thirty in a row or a trap end the pump', async () => {
  const pump = startPump();
  const ended = assert.rejects(pump.done, /^Error: refused/);
  for (let i = 0; i < 32; ++i) {
    pump.input.enqueue(pixelFrame(i));
    await settle();
    if (i === 1) pump.proceed.shift().resolve();
    else pump.proceed.shift()?.reject(new Error('refused'));
    await settle();
  }
  await ended;
  assert.deepEqual([pump.out, pump.dropped, pump.closed], [[1], 31, 1]);
  const trapped = startPump();
  const broken = assert.rejects(trapped.done, WebAssembly.RuntimeError);
  trapped.input.enqueue(pixelFrame());
  await settle();
  trapped.proceed.shift().reject(new WebAssembly.RuntimeError('unreachable'));
  await broken;
});

test('a transform closes what it is left with', async () => {
  const ends = {
    cancel: ({ reader }) => reader.cancel('enough'), abort: ({ writer }) => writer.abort('enough'),
    close: ({ end }) => end.resolve(), death: ({ end }) => end.reject(new Error('dead')),
    failure: ({ reader, process }) => {
      process.fails = true;
      return assert.rejects(reader.read(), /refused/);
    }
  };
  for (const [how, end] of Object.entries(ends)) {
    FakeFrame.all = [];
    const process = { fails: false };
    const ended = {};
    const whole = new Promise((resolve, reject) => Object.assign(ended, { resolve, reject }));
    const transform = new FrameTransform(async (frame) => {
      frame.close();
      if (process.fails) throw new Error('refused');
      return new FakeFrame([], { timestamp: -frame.timestamp });
    }, whole);
    assert.ok(transform instanceof TransformStream);
    const writer = transform.writable.getWriter();
    const reader = transform.readable.getReader();
    for (const i of [1, 2, 3, 4]) writer.write(pixelFrame(i)).catch(() => {});
    const { value } = await reader.read();
    assert.deepEqual([value.timestamp, FakeFrame.all.filter((frame) => frame.closed).length], [-1, 1]);
    value.close();
    await end({ reader, writer, process, end: ended });
    await assert.rejects(writer.closed);
    assert.deepEqual(FakeFrame.all.map((frame) => frame.closed > 0), FakeFrame.all.map(() => true), how);
  }
  const whole = new FrameTransform(async (frame) => frame, new Promise(() => {}));
  const source = new ReadableStream({
    start: (controller) => {
      for (const i of [1, 2, 3]) controller.enqueue(pixelFrame(i));
      controller.close();
    }
  });
  const times = [];
  await source.pipeThrough(whole).pipeTo(new WritableStream({ write: (frame) => void times.push(frame.timestamp) }));
  assert.deepEqual(times, [1, 2, 3]);
});

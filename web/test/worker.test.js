// Page and worker, joined by a channel of messages in place of a browser's worker.
import assert from 'node:assert/strict';
import { afterEach, beforeEach, test } from 'node:test';
import { Beautifier, createBeautyTrack } from '../src/index.js';
import { WorkerSession } from '../src/worker_session.js';
import { FakeFrame, applyLook, moduleBytes, pixelFrame, samples, startEngine } from './support.js';

class FakeWorker extends EventTarget {
  static running = new Set();
  static byReference = false;
  static serve = (scope) => new WorkerSession(scope);

  constructor() {
    super();
    FakeWorker.running.add(this);
    const { port1, port2 } = new MessageChannel();
    Object.assign(this, { port1, port2 });
    if (FakeWorker.byReference) return this.#joinByReference();
    port1.onmessage = ({ data }) => this.dispatchEvent(new MessageEvent('message', { data }));
    FakeWorker.serve({
      postMessage: (message, transfer) => port2.postMessage(message, transfer),
      addEventListener: (_, listener) => { port2.onmessage = listener; },
      close: () => this.terminate()
    });
  }

  /** For tracks and frames, which no channel takes here. */
  #joinByReference() {
    const listeners = [];
    const later = (task) => setTimeout(task, 0);
    this.postMessage = (data) => later(() => listeners.forEach((listener) => listener({ data })));
    FakeWorker.serve({
      postMessage: (data) => later(() => this.dispatchEvent(new MessageEvent('message', { data }))),
      addEventListener: (_, listener) => listeners.push(listener),
      close: () => this.terminate()
    });
  }

  postMessage(message, transfer) {
    this.port1.postMessage(message, transfer);
  }

  terminate() {
    FakeWorker.running.delete(this);
    this.port2.close();
  }
}

class FakeImage {
  constructor(data, width, height, { colorSpace }) {
    Object.assign(this, { data, width, height, colorSpace });
  }
}

const wasmUrl = `data:application/wasm;base64,${(await moduleBytes('simd')).toString('base64')}`;
const picture = () => new FakeImage(new Uint8ClampedArray(samples(32 * 9 * 4)), 32, 9, { colorSpace: 'display-p3' });

class FakeTrack extends EventTarget {
  kind = 'video';
  readyState = 'live';
  getSettings = () => ({});

  clone() {
    this.copy = new FakeTrack();
    return this.copy;
  }

  stop() {
    this.readyState = 'ended';
  }
}

beforeEach(() => {
  FakeWorker.serve = (scope) => new WorkerSession(scope);
  FakeWorker.byReference = false;
  Object.assign(globalThis, { Worker: FakeWorker, ImageData: FakeImage, VideoFrame: FakeFrame });
});

afterEach(async () => {
  const turn = () => new Promise((resolve) => setTimeout(resolve, 30));
  for (let turns = 0; turns < 50 && FakeWorker.running.size > 0; ++turns) await turn();
  assert.equal(FakeWorker.running.size, 0, 'a worker runs on');
});

async function expected(image, look) {
  const engine = await startEngine('scalar');
  applyLook(engine, look);
  engine.reserve(image.data.length).set(image.data);
  const { width, height } = image;
  engine.process({ format: 16, matrix: 6, range: 0, width, height, planes: [{ offset: 0, stride: 4 * width }] });
  return new Uint8ClampedArray(engine.frameBytes(image.data.length));
}

test('a picture is processed, with the look of its time', async () => {
  const beautifier = await Beautifier.create({ look: { whitening: 90 }, wasmUrl });
  const image = picture();
  const first = beautifier.processPixels(image);
  beautifier.look = { whitening: 10, radius: 8 };
  assert.throws(() => { beautifier.look = { radius: -1 }; }, RangeError);
  assert.equal(beautifier.look.radius, 8);
  const second = await beautifier.processPixels(image);
  assert.deepEqual((await first).data, await expected(image, { whitening: 90 }));
  assert.deepEqual(second.data, await expected(image, { whitening: 10, radius: 8 }));
  assert.deepEqual([second.width, second.height, second.colorSpace], [32, 9, 'display-p3']);
  assert.deepEqual(image, picture());
  assert.deepEqual([beautifier.stats.frames, beautifier.stats.milliseconds > 0], [2, true]);
  for (const data of [new Float32Array(4), new Uint8ClampedArray(3), new Uint8ClampedArray(0)]) {
    await assert.rejects(beautifier.processPixels({ data, width: 1, height: 1 }), TypeError);
  }

  const late = assert.rejects(beautifier.processPixels(image), { message: 'closed' });
  beautifier.close();
  beautifier.close();
  await late;
  await assert.rejects(beautifier.processPixels(image), { message: 'closed' });
  const frame = { [Symbol.toStringTag]: 'VideoFrame', closed: 0, close() { this.closed += 1; } };
  await assert.rejects(beautifier.process(frame), { message: 'closed' });
  assert.equal(frame.closed, 1);
});

test('what cannot start is rejected with words', async () => {
  const refused = (options, words) => assert.rejects(Beautifier.create(options), words);
  await refused({ look: { softening: 'much' }, wasmUrl }, /^RangeError: look\.softening: /);
  await refused({ wasmUrl: 'data:application/wasm,none' }, /not a WebAssembly module/);
  await refused({ wasmUrl: 'http://[' }, /^TypeError: wasmUrl: 'http:\/\/\[' is not an address/);
  await refused({ wasmUrl: '' }, /^TypeError: wasmUrl: '' is not an address/);
  await refused({ wasmUrl, whitening: 30 }, /^RangeError: options\.whitening: /);
  await refused({ wasmUrl, signal: {} }, /^TypeError: options\.signal: /);
  await refused({ wasmUrl, signal: AbortSignal.abort(new Error('enough')) }, /^Error: enough/);
  const later = new AbortController();
  const aborted = refused({ wasmUrl, signal: later.signal }, /^Error: enough/);
  later.abort(new Error('enough'));
  await aborted;
  await assert.rejects(createBeautyTrack(Object.assign(new FakeTrack(), { kind: 'audio' })), /not a video track/);
  await assert.rejects(createBeautyTrack(Object.assign(new FakeTrack(), { readyState: 'ended' })), /has ended/);
  await assert.rejects(createBeautyTrack(new FakeTrack(), { wasmUrl }), /this browser cannot process a camera/);
  FakeWorker.serve = (scope) => scope.postMessage({ type: 'hello', protocol: 0 });
  await refused({ wasmUrl }, /worker\.js is of another version/);
  globalThis.Worker = class { constructor() { throw new Error('policy'); } };
  await refused({ wasmUrl }, /cannot be started: policy/);
});

test('a worker that breaks rejects what is in work, and what comes later', async () => {
  let worker;
  globalThis.Worker = class extends FakeWorker { constructor() { super(); worker = this; } };
  const beautifier = await Beautifier.create({ wasmUrl });
  const inWork = assert.rejects(beautifier.processPixels(picture()), /has failed: out of order/);
  worker.dispatchEvent(Object.assign(new Event('error', { cancelable: true }), { message: 'out of order' }));
  await inWork;
  await assert.rejects(beautifier.processPixels(picture()), /has failed: out of order/);
  beautifier.close();
  await assert.rejects(beautifier.processPixels(picture()), { message: 'closed' });
});

test('a worker that listens late misses nothing', async () => {
  FakeWorker.byReference = true;
  FakeWorker.serve = (scope) => void setTimeout(() => new WorkerSession(scope), 50);
  const beautifier = await Beautifier.create({ look: { whitening: 90 }, wasmUrl });
  const { data } = await beautifier.processPixels(picture());
  assert.deepEqual(data, await expected(picture(), { whitening: 90 }));
  beautifier.close();
});

test('a close comes before the frames that wait, and they are closed', async () => {
  FakeWorker.byReference = true;
  FakeFrame.all = [];
  const beautifier = await Beautifier.create({ wasmUrl });
  let copied = 0;
  const frames = Array.from({ length: 20 }, (_, i) => {
    const frame = Object.assign(pixelFrame(i), { codedWidth: 16 });
    const copyTo = frame.copyTo.bind(frame);
    return Object.assign(frame, { copyTo: (...given) => { copied += 1; return copyTo(...given); } });
  });
  const refused = frames.map((frame) => assert.rejects(beautifier.process(frame), { message: 'closed' }));
  beautifier.close();
  await Promise.all(refused);
  await new Promise((resolve) => setTimeout(resolve, 100));
  assert.ok(copied < 3, `${copied} were processed`);
  assert.deepEqual(FakeFrame.all.filter((frame) => frame.closed === 0), []);
});

test('an abort closes', async () => {
  const abort = new AbortController();
  const beautifier = await Beautifier.create({ wasmUrl, signal: abort.signal });
  abort.abort(new Error('enough'));
  await assert.rejects(beautifier.processPixels(picture()), /^Error: enough/);
  const early = new AbortController();
  const made = Beautifier.create({ wasmUrl, signal: early.signal });
  early.abort(null);
  assert.equal(await made.catch((reason) => reason), null);
});

test('where tracks are processed in workers, a copy goes there and ends with its track', async (context) => {
  FakeWorker.byReference = true;
  let camera;
  const out = [];
  const output = new FakeTrack();
  globalThis.MediaStreamTrackProcessor = class {
    constructor() { this.readable = new ReadableStream({ start: (controller) => { camera = controller; } }); }
  };
  globalThis.VideoTrackGenerator = class {
    track = output;
    writable = new WritableStream({ write: (frame) => void out.push([frame.timestamp, Buffer.from(frame.data)]) });
  };
  context.after(() => {
    delete globalThis.MediaStreamTrackProcessor;
    delete globalThis.VideoTrackGenerator;
  });
  const settle = () => new Promise((resolve) => setTimeout(resolve, 20));
  const input = new FakeTrack();
  const beauty = await createBeautyTrack(input, { look: { whitening: 100 }, wasmUrl });
  assert.equal(beauty.track, output);
  camera.enqueue(pixelFrame(1));
  await settle();
  beauty.look = { whitening: 0, softening: 0 };
  await settle();
  camera.enqueue(pixelFrame(2));
  await settle();
  const [first, second] = out.map(([, data]) => data);
  assert.deepEqual([beauty.stats.frames, out.map(([time]) => time)], [2, [1, 2]]);
  assert.ok(second.equals(pixelFrame().data) && !first.equals(second));
  let ends = 0;
  output.addEventListener('ended', () => { ends += 1; });
  input.stop(); // says nothing; the next frame shows it
  camera.enqueue(pixelFrame(3));
  await beauty.closed;
  await settle();
  assert.deepEqual([output.readyState, input.copy.readyState, ends], ['ended', 'ended', 1]);

  globalThis.VideoTrackGenerator = class { constructor() { throw new Error('not here'); } };
  const other = new FakeTrack();
  await assert.rejects(createBeautyTrack(other, { wasmUrl }), /this browser cannot process a camera/);
  assert.deepEqual([other.readyState, other.copy.readyState], ['live', 'ended']);
});

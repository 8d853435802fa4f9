/// The worker's end: an engine, and frames for it.
import { Engine } from './engine.js';
import { FrameProcessor } from './frame_processor.js';
import { nextTurn, pumpFrames } from './frame_pump.js';
import { loadModule } from './module.js';
import { PROTOCOL } from './protocol.js';

/**
 * @typedef {import('./protocol.js').ToPage} ToPage
 * @typedef {import('./protocol.js').ToWorker} ToWorker
 *
 * @typedef {object} Scope  what is used of a worker's global object
 * @property {(message: ToPage, transfer?: Transferable[]) => void} postMessage
 * @property {(type: 'message', listener: (event: MessageEvent<ToWorker>) => void) => void} addEventListener
 * @property {() => void} close
 */

/** @param {unknown} error */
function wordsOf(error) {
  return error instanceof Error && error.message ? error.message : String(error);
}

/**
 * Lets the page see the end of this worker, whatever ends it: its lock is free then.
 *
 * @param {string} name
 * @returns {Promise<boolean>} false where there are no locks, such as in a document without an origin of its own
 */
function holdLock(name) {
  return new Promise((resolve) => {
    if (!globalThis.navigator?.locks) return resolve(false);
    const held = navigator.locks.request(name, () => {
      resolve(true);
      return new Promise(() => {});
    });
    held.catch(() => resolve(false));
  });
}

export class WorkerSession {
  #scope;
  /** @type {Engine | undefined} */
  #engine;
  /** @type {FrameProcessor | undefined} */
  #processor;
  #stop = new AbortController();
  /** @type {Promise<unknown>} */
  #work = Promise.resolve();

  /** @param {Scope} scope */
  constructor(scope) {
    this.#scope = scope;
    scope.addEventListener('message', ({ data }) => this.#receive(data));
    scope.postMessage({ type: 'hello', protocol: PROTOCOL });
  }

  /** @param {ToWorker} message */
  #receive(message) {
    switch (message.type) {
      case 'start':
        this.#inTurn(() => this.#start(message)).catch((error) => this.#fail(error));
        break;
      case 'look':
        this.#inTurn(() => this.#applyLook(message)).catch((error) => this.#fail(error));
        break;
      case 'frame':
        this.#answer(message.id, async (processor) => {
          const frame = await processor.frame(message.frame);
          return { value: frame, transfer: frame };
        }, () => message.frame.close());
        break;
      case 'pixels':
        this.#answer(message.id, async (processor) => {
          processor.pixels(message.data, message.width, message.height);
          return { value: message.data, transfer: message.data.buffer };
        });
        break;
      case 'streams':
        this.#pump(message.readable, message.writable);
        break;
      case 'track':
        this.#takeTrack(message.track);
        break;
      case 'stop':
        this.#end();
        break;
    }
  }

  /**
   * One thing at a time: the engine has room for one frame.
   *
   * @template T
   * @param {() => T | Promise<T>} task
   * @returns {Promise<T>}
   */
  #inTurn(task) {
    const result = this.#work.then(task);
    this.#work = result.catch(() => {});
    return result;
  }

  /** @param {ToWorker & {type: 'start'}} message */
  async #start({ wasmUrl, lock }) {
    this.#engine = new Engine(await loadModule(wasmUrl));
    this.#processor = new FrameProcessor(this.#engine);
    const holdsLock = await holdLock(lock);
    const takesTracks = 'MediaStreamTrackProcessor' in globalThis && 'VideoTrackGenerator' in globalThis;
    this.#scope.postMessage({ type: 'ready', holdsLock, takesTracks });
  }

  /** @param {ToWorker & {type: 'look'}} message */
  #applyLook({ settings, table }) {
    this.#engine?.configure(settings);
    if (table !== undefined) this.#engine?.setTable(table);
  }

  /**
   * @param {number} id
   * @param {(processor: FrameProcessor) => Promise<{
   *   value: VideoFrame | Uint8ClampedArray<ArrayBuffer>, transfer: Transferable}>} task
   * @param {() => void} [skip]  in place of the task, after a stop
   */
  async #answer(id, task, skip = () => {}) {
    const processor = /** @type {FrameProcessor} */ (this.#processor);
    try {
      const { value, transfer } = await this.#inTurn(async () => {
        await nextTurn(); // a stop may have come; what is done so far need not have let it in
        if (!this.#stop.signal.aborted) return task(processor);
        skip();
        throw new Error('closed');
      });
      this.#scope.postMessage({ type: 'answer', id, value, stats: processor.stats }, [transfer]);
    } catch (error) {
      if (error instanceof WebAssembly.RuntimeError) this.#fail(error);
      else this.#scope.postMessage({ type: 'answer', id, error: wordsOf(error) });
    }
  }

  /**
   * @param {ReadableStream<VideoFrame>} readable
   * @param {WritableStream<VideoFrame>} writable
   */
  async #pump(readable, writable) {
    const processor = /** @type {FrameProcessor} */ (this.#processor);
    const work = {
      process: (/** @type {VideoFrame} */ frame) => this.#inTurn(() => processor.frame(frame)),
      onDrop: () => {
        processor.dropped += 1;
      },
      onFrame: () => this.#scope.postMessage({ type: 'stats', stats: processor.stats })
    };
    try {
      await pumpFrames(readable, writable, work, this.#stop.signal);
      this.#scope.postMessage({ type: 'ended' });
    } catch (error) {
      this.#fail(error);
    }
  }

  /** @param {MediaStreamTrack} track */
  async #takeTrack(track) {
    try {
      const { track: output, writable } = new VideoTrackGenerator();
      const { readable } = new MediaStreamTrackProcessor({ track });
      const transfer = [/** @type {Transferable} */ (/** @type {unknown} */ (output))];
      this.#scope.postMessage({ type: 'track', track: output }, transfer);
      await this.#pump(readable, writable);
    } catch {
      this.#scope.postMessage({ type: 'track', track: null });
    } finally {
      track.stop();
    }
  }

  /** @param {unknown} error */
  #fail(error) {
    const isTrap = error instanceof WebAssembly.RuntimeError;
    const words = isTrap ? `the engine has broken down: ${error.message}` : wordsOf(error);
    this.#scope.postMessage({ type: 'failed', error: words });
    this.#stop.abort();
  }

  /** Lets the frames go, then the worker and with it the engine's memory. */
  async #end() {
    this.#stop.abort();
    await this.#work;
    this.#scope.close();
  }
}

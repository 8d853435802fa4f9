/// The page's end of a worker.
import { PROTOCOL } from './protocol.js';
import { settingsOf } from './look.js';

/**
 * @typedef {import('./look.js').CompleteLook} CompleteLook
 * @typedef {import('./protocol.js').ToPage} ToPage
 * @typedef {import('./protocol.js').ToWorker} ToWorker
 * @typedef {import('./index.js').Options} Options
 */

/** Milliseconds for a script to say that it is this package's worker. */
const HELLO = 20000;

/** Milliseconds for a worker to let its frames go before it is ended from outside. */
const FAREWELL = 1000;

/** What addresses are relative to: the page, or the worker that stands for one. */
function baseUrl() {
  return globalThis.document?.baseURI ?? globalThis.location?.href;
}

/**
 * @param {'workerUrl' | 'wasmUrl'} name  for the words of an error
 * @param {string | URL} address
 */
function addressOf(name, address) {
  try {
    if (String(address) === '') throw new TypeError();
    return new URL(address, baseUrl()).href;
  } catch {
    throw new TypeError(`${name}: '${address}' is not an address`);
  }
}

/** @param {string | undefined} url */
function startWorker(url) {
  if (typeof Worker === 'undefined') throw new Error('this browser has no workers');
  if (typeof WebAssembly === 'undefined') throw new Error('this browser has no WebAssembly');
  try {
    // Bundlers look for exactly the first form and put their own address there. No error can name it: the event of a
    // worker that cannot be loaded has none.
    return url === undefined
      ? new Worker(new URL('./worker.js', import.meta.url), { type: 'module' })
      : new Worker(url, { type: 'module' });
  } catch (error) {
    throw new Error(`the worker (${url ?? 'worker.js'}) cannot be started: ${/** @type {Error} */ (error).message}`);
  }
}

export class WorkerLink {
  #worker;
  /** @type {Map<number, {resolve: (value: any) => void, reject: (error: Error) => void}>} */
  #requests = new Map();
  #lastId = 0;
  #lock = `vlvk-makeup ${Math.random()} ${performance.now()}`;
  #lockWait = new AbortController();
  /** @type {ReturnType<typeof setTimeout> | undefined} */
  #helloTimer;
  #ended = false;
  /** @type {Error | undefined} */
  #failure;
  /** @type {(error?: Error) => void} */
  #close = () => {};
  /** Posts what comes first. Not before the worker listens: what arrives while it loads its modules may be lost. */
  #onHello = () => {};
  /** @type {(message: ToPage & {type: 'ready'}) => void} */
  #onReady = () => {};
  /** @type {CompleteLook | undefined} */
  #look;

  /** Resolves at the end, rejects with what has broken the worker. */
  closed;
  /** @type {import('./index.js').Stats} */
  stats = { frames: 0, dropped: 0, milliseconds: 0 };
  /** Whether the worker has generators for tracks. */
  takesTracks = false;
  onStats = () => {};
  /** @type {(track: MediaStreamTrack | null) => void} */
  onTrack = () => {};

  /** @param {Worker} worker */
  constructor(worker) {
    this.#worker = worker;
    this.closed = /** @type {Promise<void>} */ (
      new Promise((resolve, reject) => {
        this.#close = (error) => (error ? reject(error) : resolve());
      })
    );
    this.closed.catch(() => {});
    worker.addEventListener('message', ({ data }) => this.#receive(data));
  }

  /**
   * Starts a worker with a look.
   *
   * @param {CompleteLook} look
   * @param {Options} options
   * @returns {Promise<WorkerLink>}
   */
  static async open(look, { signal, workerUrl, wasmUrl }) {
    signal?.throwIfAborted();
    const wasm = wasmUrl === undefined ? null : addressOf('wasmUrl', wasmUrl);
    const script = workerUrl === undefined ? undefined : addressOf('workerUrl', workerUrl);
    const link = new WorkerLink(startWorker(script));
    const abort = () => link.end(signal?.reason);
    signal?.addEventListener('abort', abort);
    try {
      await link.#start(wasm, look, script ?? 'worker.js');
    } catch (error) {
      link.end();
      throw signal?.aborted ? signal.reason : error;
    } finally {
      signal?.removeEventListener('abort', abort);
    }
    return link;
  }

  /**
   * @param {string | null} wasmUrl
   * @param {CompleteLook} look
   * @param {string} name  of the worker, for words
   */
  async #start(wasmUrl, look, name) {
    const fail = (/** @type {string} */ why) => this.end(new Error(`the worker (${name}) ${why}`));
    this.#worker.addEventListener('error', (event) => {
      event.preventDefault();
      fail(event.message ? `has failed: ${event.message}` : 'cannot be loaded; give its address as workerUrl');
    });
    this.#helloTimer = setTimeout(() => fail(`does not answer in ${HELLO / 1000} s`), HELLO);
    const ready = new Promise((resolve) => {
      this.#onReady = resolve;
    });
    this.#onHello = () => {
      this.post({ type: 'start', wasmUrl, lock: this.#lock });
      this.setLook(look);
    };
    const message = await Promise.race([ready, this.closed]);
    if (!message) throw new Error('closed');
    this.takesTracks = message.takesTracks;
    if (message.holdsLock) this.#watch();
  }

  /** Waits for the lock that the worker keeps as long as it lives. */
  #watch() {
    const died = () => this.end(new Error('the worker has died'));
    navigator.locks.request(this.#lock, { signal: this.#lockWait.signal }, died).catch(() => {});
  }

  get isEnded() {
    return this.#ended;
  }

  /** @param {ToPage} message */
  #receive(message) {
    if (this.#ended) {
      // What was asked for before the end.
      if (message?.type === 'answer' && 'value' in message && 'close' in message.value) message.value.close();
      if (message?.type === 'track') message.track?.stop();
      return;
    }
    switch (message?.type) {
      case 'hello':
        clearTimeout(this.#helloTimer);
        if (message.protocol !== PROTOCOL) this.end(new Error('worker.js is of another version of the package'));
        else this.#onHello();
        break;
      case 'ready':
        this.#onReady(message);
        break;
      case 'answer':
        this.#take(message);
        break;
      case 'track':
        this.onTrack(message.track);
        break;
      case 'stats':
        this.stats = message.stats;
        this.onStats();
        break;
      case 'ended':
        this.end();
        break;
      case 'failed':
        this.end(new Error(message.error));
        break;
    }
  }

  /** @param {ToPage & {type: 'answer'}} answer */
  #take(answer) {
    const request = this.#requests.get(answer.id);
    this.#requests.delete(answer.id);
    if ('error' in answer) {
      request?.reject(new Error(answer.error));
      return;
    }
    this.stats = answer.stats;
    request?.resolve(answer.value);
  }

  /**
   * @param {ToWorker} message
   * @param {Transferable[]} [transfer]
   */
  post(message, transfer = []) {
    if (!this.#ended) this.#worker.postMessage(message, transfer);
  }

  /**
   * For the next frame and all later ones.
   *
   * @param {CompleteLook} look
   */
  setLook(look) {
    const isSameTable = look.table === (this.#look?.table ?? null);
    this.#look = look;
    const settings = settingsOf(look);
    this.post(isSameTable ? { type: 'look', settings } : { type: 'look', settings, table: look.table });
  }

  /**
   * @param {VideoFrame} frame  goes to the worker, and is closed here in any case
   * @returns {Promise<VideoFrame>}
   */
  async frame(frame) {
    try {
      return await this.#request((id) => this.post({ type: 'frame', id, frame }, [frame]));
    } finally {
      frame.close();
    }
  }

  /**
   * @param {Uint8ClampedArray<ArrayBuffer>} data  goes to the worker
   * @param {number} width
   * @param {number} height
   * @returns {Promise<Uint8ClampedArray<ArrayBuffer>>}
   */
  pixels(data, width, height) {
    return this.#request((id) => this.post({ type: 'pixels', id, data, width, height }, [data.buffer]));
  }

  /**
   * @template T
   * @param {(id: number) => void} send
   * @returns {Promise<T>}
   */
  #request(send) {
    return new Promise((resolve, reject) => {
      if (this.#ended) throw this.#failure ?? new Error('closed');
      const id = ++this.#lastId;
      send(id);
      this.#requests.set(id, { resolve, reject });
    });
  }

  /**
   * Ends the worker and all that it holds.
   *
   * @param {Error} [error]  what has broken it; without, later requests are refused as "closed"
   */
  end(error) {
    if (!error) this.#failure = undefined;
    if (this.#ended) return;
    this.post({ type: 'stop' });
    this.#ended = true;
    this.#failure = error;
    const worker = this.#worker;
    setTimeout(() => worker.terminate(), FAREWELL);
    clearTimeout(this.#helloTimer);
    this.#lockWait.abort();
    for (const { reject } of this.#requests.values()) reject(error ?? new Error('closed'));
    this.#requests.clear();
    this.#close(error);
  }
}

/// From a camera's stream of frames to a track's. At most one frame is in work and one waits, the newest: what it takes
/// the place of is dropped, so that a slow processor costs frames and no delay.
import { PATIENCE } from './patience.js';

/** The next turn of the event loop, so that what has arrived meanwhile is read. */
export function nextTurn() {
  return new Promise((resolve) => {
    const { port1, port2 } = new MessageChannel();
    port1.onmessage = () => {
      port1.close();
      resolve(undefined);
    };
    port2.postMessage(null);
  });
}

/** The newest frame of a stream. */
class NewestFrame {
  /** @type {VideoFrame | null} */
  #frame = null;
  #ended = false;
  #wake = () => {};
  #reader;
  #onDrop;

  /**
   * @param {ReadableStream<VideoFrame>} readable
   * @param {() => void} onDrop
   */
  constructor(readable, onDrop) {
    this.#reader = readable.getReader();
    this.#onDrop = onDrop;
  }

  /** Reads until the stream ends. */
  async read() {
    try {
      for (;;) {
        const { done, value } = await this.#reader.read();
        if (done) return;
        if (this.#ended) {
          value.close();
          return;
        }
        if (this.#frame) {
          this.#frame.close();
          this.#onDrop();
        }
        this.#frame = value;
        this.#wake();
      }
    } finally {
      this.#ended = true;
      this.#wake();
    }
  }

  /** Takes the newest frame, waiting for one; null at the end. */
  async take() {
    while (!this.#frame && !this.#ended) {
      await new Promise((resolve) => {
        this.#wake = () => resolve(undefined);
      });
    }
    const frame = this.#frame;
    this.#frame = null;
    return frame;
  }

  stop() {
    this.#ended = true;
    this.#frame?.close();
    this.#frame = null;
    this.#wake();
    this.#reader.cancel().catch(() => {});
  }
}

/**
 * Runs until the input or the output ends, or `signal` is aborted. Then both streams are closed, and so are all frames.
 *
 * @param {ReadableStream<VideoFrame>} readable
 * @param {WritableStream<VideoFrame>} writable
 * @param {object} work
 * @param {(frame: VideoFrame) => Promise<VideoFrame>} work.process  closes what it is given
 * @param {() => void} work.onDrop  a frame came too late, or was refused
 * @param {() => void} work.onFrame  a frame went out
 * @param {AbortSignal} signal
 */
export async function pumpFrames(readable, writable, { process, onDrop, onFrame }, signal) {
  const newest = new NewestFrame(readable, onDrop);
  const writer = writable.getWriter();
  const stop = () => newest.stop();
  signal.addEventListener('abort', stop);
  writer.closed.then(stop, stop);
  if (signal.aborted) stop();
  const reading = newest.read();
  reading.catch(() => {});
  try {
    let refused = 0;
    for (let frame = await newest.take(); frame; frame = await newest.take()) {
      /** @type {VideoFrame | undefined} */
      let result;
      try {
        result = await process(frame);
        refused = 0;
      } catch (error) {
        onDrop();
        if (error instanceof WebAssembly.RuntimeError || ++refused >= PATIENCE) throw error;
        continue;
      }
      try {
        await writer.write(result);
      } catch {
        break; // the output has been ended
      } finally {
        result.close();
      }
      onFrame();
      await nextTurn();
    }
    await reading;
  } finally {
    stop();
    signal.removeEventListener('abort', stop);
    writer.close().catch(() => {});
  }
}

/// A track of a camera, beautified.
import { hasCanvasCarrier, startCanvasCarrier } from './canvas_carrier.js';
import { readLook } from './look.js';
import { checkOptions } from './options.js';
import { startWindowCarrier, hasWindowCarrier } from './window_carrier.js';
import { startWorkerCarrier } from './worker_carrier.js';
import { WorkerLink } from './worker_link.js';

/**
 * @typedef {import('./index.js').Options} Options
 *
 * @typedef {object} Carrier  what takes frames from the input to the worker and back
 * @property {MediaStreamTrack} output
 * @property {() => number} dropped  frames that it did not hand to the worker
 * @property {() => void} stop  ends the output, and leaves the input as it is
 */

/** @param {MediaStreamTrack} track */
function checkTrack(track) {
  if (track?.kind !== 'video' || typeof track.getSettings !== 'function') {
    throw new TypeError('createBeautyTrack: not a video track');
  }
  if (track.readyState !== 'live') throw new Error('createBeautyTrack: the track has ended');
}

/**
 * @param {WorkerLink} link
 * @param {MediaStreamTrack} input
 * @returns {Promise<Carrier>}
 */
async function startCarrier(link, input) {
  if (hasWindowCarrier()) return startWindowCarrier(link, input);
  const inWorker = link.takesTracks ? await startWorkerCarrier(link, input) : null;
  if (inWorker) return inWorker;
  if (hasCanvasCarrier()) return startCanvasCarrier(link, input);
  throw new Error(
    'this browser cannot process a camera: it has neither MediaStreamTrackProcessor with a generator, nor VideoFrame ' +
      'with requestVideoFrameCallback and captureStream'
  );
}

class BeautyTrack {
  #link;
  #carrier;
  #look;

  /**
   * @param {WorkerLink} link
   * @param {Carrier} carrier
   * @param {import('./look.js').CompleteLook} look
   */
  constructor(link, carrier, look) {
    this.#link = link;
    this.#carrier = carrier;
    this.#look = look;
  }

  get track() {
    return this.#carrier.output;
  }

  get look() {
    return this.#look;
  }

  set look(look) {
    this.#look = readLook(look, this.#look);
    this.#link.setLook(this.#look);
  }

  get stats() {
    const { frames, dropped, milliseconds } = this.#link.stats;
    return { frames, dropped: dropped + this.#carrier.dropped(), milliseconds };
  }

  get closed() {
    return this.#link.closed;
  }

  stop() {
    this.#carrier.stop();
    this.#link.end();
  }
}

/**
 * Ends the output where the link ends by itself, and says so as a camera would.
 *
 * @param {Carrier} carrier
 */
function endOutput({ output, stop }) {
  if (output.readyState === 'ended') return stop();
  stop();
  output.dispatchEvent(new Event('ended'));
}

/**
 * @param {MediaStreamTrack} track
 * @param {Options} [options]
 */
export async function createBeautyTrack(track, options = {}) {
  checkOptions(options);
  const look = readLook(options.look);
  const { signal } = options;
  checkTrack(track);
  const link = await WorkerLink.open(look, options);
  try {
    signal?.throwIfAborted();
    checkTrack(track);
    const carrier = await startCarrier(link, track);
    const result = new BeautyTrack(link, carrier, look);
    const stop = () => result.stop();
    signal?.addEventListener('abort', stop);
    const finish = () => {
      signal?.removeEventListener('abort', stop);
      endOutput(carrier);
    };
    link.closed.then(finish, finish);
    if (signal?.aborted) {
      stop();
      throw signal.reason;
    }
    return result;
  } catch (error) {
    link.end();
    throw error;
  }
}

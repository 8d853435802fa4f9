/// Frames and pictures, one by one, at the caller's pace.
import { FrameTransform } from './frame_transform.js';
import { readLook } from './look.js';
import { checkOptions } from './options.js';
import { WorkerLink } from './worker_link.js';

/** @typedef {import('./index.js').Options} Options */

/** @param {unknown} frame */
function isFrame(frame) {
  return Object.prototype.toString.call(frame) === '[object VideoFrame]';
}

/** @param {unknown} image */
function isPixels(image) {
  const { data, width, height } = /** @type {Partial<ImageData>} */ (image ?? {});
  return data instanceof Uint8ClampedArray && data.length > 0 && data.length === 4 * Number(width) * Number(height);
}

export class Beautifier {
  #link;
  #look;

  /**
   * @param {WorkerLink} link
   * @param {import('./look.js').CompleteLook} look
   */
  constructor(link, look) {
    this.#link = link;
    this.#look = look;
  }

  /** @param {Options} [options] */
  static async create(options = {}) {
    checkOptions(options);
    const look = readLook(options.look);
    const { signal } = options;
    const link = await WorkerLink.open(look, options);
    const abort = () => link.end(signal?.reason);
    signal?.addEventListener('abort', abort);
    const forget = () => signal?.removeEventListener('abort', abort);
    link.closed.then(forget, forget);
    if (signal?.aborted) {
      abort();
      throw signal.reason;
    }
    return new Beautifier(link, look);
  }

  get look() {
    return this.#look;
  }

  set look(look) {
    this.#look = readLook(look, this.#look);
    this.#link.setLook(this.#look);
  }

  get stats() {
    return this.#link.stats;
  }

  /** @param {VideoFrame} frame */
  async process(frame) {
    if (!isFrame(frame)) throw new TypeError('process: not a VideoFrame');
    if (frame.codedWidth === 0 && !this.#link.isEnded) throw new TypeError('process: the frame is closed');
    return this.#link.frame(frame);
  }

  transform() {
    return new FrameTransform((frame) => this.process(frame), this.#link.closed);
  }

  /** @param {ImageData} image */
  async processPixels(image) {
    if (!isPixels(image)) throw new TypeError('processPixels: not an ImageData of 8 bits');
    const { data, width, height, colorSpace } = image;
    const result = await this.#link.pixels(new Uint8ClampedArray(data), width, height);
    return new ImageData(result, width, height, { colorSpace });
  }

  close() {
    this.#link.end();
  }
}

/// Frames and pictures through an engine, with what it takes to look back on how that went.
import { copyOptions, planFrame, resultFrame } from './frame_plan.js';

/** Frames whose mean is the time of a frame: about a second of video. */
const TIMES = 30;

export class FrameProcessor {
  #engine;
  /** @type {number[]} */
  #times = [];
  #frames = 0;
  /** Frames that came too late or could not be read. */
  dropped = 0;

  /** @param {import('./engine.js').Engine} engine */
  constructor(engine) {
    this.#engine = engine;
  }

  get stats() {
    const sum = this.#times.reduce((total, time) => total + time, 0);
    return { frames: this.#frames, dropped: this.dropped, milliseconds: sum / Math.max(this.#times.length, 1) };
  }

  /**
   * @param {VideoFrame} frame  closed, whatever happens
   * @returns {Promise<VideoFrame>} of the same size and time, in the plan's format
   */
  async frame(frame) {
    try {
      const plan = planFrame(frame);
      try {
        await frame.copyTo(this.#engine.reserve(plan.bytes), copyOptions(plan));
      } catch (error) {
        const { name, message } = /** @type {Error} */ (error);
        throw new Error(`a frame of the format ${frame.format} cannot be read: ${message || name}`);
      }
      this.#process(plan.engine);
      return resultFrame(this.#engine.frameBytes(plan.bytes), plan, frame);
    } finally {
      frame.close();
    }
  }

  /**
   * @param {Uint8ClampedArray<ArrayBuffer>} data  RGBA, changed
   * @param {number} width
   * @param {number} height
   */
  pixels(data, width, height) {
    this.#engine.reserve(data.length).set(data);
    this.#process({ format: 16, matrix: 6, range: 0, width, height, planes: [{ offset: 0, stride: width * 4 }] });
    data.set(this.#engine.frameBytes(data.length));
  }

  /** @param {import('./layouts.js').EngineFrame} frame */
  #process(frame) {
    this.#times.push(this.#engine.process(frame));
    if (this.#times.length > TIMES) this.#times.shift();
    this.#frames += 1;
  }
}

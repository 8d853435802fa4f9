/// The figures below the picture.
import { find } from './page.js';
import { sizeOf } from './session.js';

/** Milliseconds between two looks at the figures, and the span over which frames are counted. */
const TICK = 500;
const SPAN = 2000;

const NONE = '–';

export class Meter {
  #rate = find('#rate', HTMLElement);
  #milliseconds = find('#milliseconds', HTMLElement);
  #size = find('#size', HTMLElement);
  #dropped = find('#dropped', HTMLElement);
  /** @type {import('./session.js').Session | null} */
  #session = null;
  /** @type {{time: number, frames: number}[]} */
  #past = [];
  /** @type {ReturnType<typeof setInterval> | undefined} */
  #timer;

  /** What the figures are of; null: of nothing. */
  set session(/** @type {import('./session.js').Session | null} */ session) {
    clearInterval(this.#timer);
    this.#session = session;
    this.#past = [];
    if (session) this.#timer = setInterval(() => this.#update(), TICK);
    this.#update();
  }

  #update() {
    const session = this.#session;
    const stats = session?.stats();
    const { width, height } = session ? sizeOf(session.result) : { width: 0, height: 0 };
    this.#write(this.#size, width ? `${width} × ${height}` : NONE);
    this.#write(this.#milliseconds, stats?.frames ? `${stats.milliseconds.toFixed(1)} ms` : NONE);
    this.#write(this.#dropped, session?.track && stats ? String(stats.dropped) : NONE);
    this.#write(this.#rate, session?.track && stats ? this.#count(stats.frames) : NONE);
  }

  /** @param {number} frames  since the beginning */
  #count(frames) {
    const now = { time: performance.now(), frames };
    this.#past.push(now);
    while (now.time - this.#past[0].time > SPAN + TICK / 2) this.#past.shift();
    const [{ time, frames: before }] = this.#past;
    return now.time > time ? ((1000 * (frames - before)) / (now.time - time)).toFixed(0) : NONE;
  }

  /** @param {HTMLElement} element @param {string} text */
  #write(element, text) {
    if (element.textContent !== text) element.textContent = text;
  }
}

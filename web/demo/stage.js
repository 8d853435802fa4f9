/// The picture: original and result in two layers of one size, and the divider between them.
import { find } from './page.js';
import { sizeOf } from './session.js';

/** Percent of the width for a key, and for a key that goes far. */
const STEP = 1;
const FAR = 10;

/** Pixels that a finger moves before it counts as a drag along the picture. */
const SLOP = 6;

export class Stage {
  #stage = find('#stage', HTMLElement);
  #frame = find('.frame', HTMLElement, this.#stage);
  #divider = find('#divider', HTMLElement);
  #button = find('#show-original', HTMLButtonElement);
  #layers = {
    original: find('.layer.original', HTMLElement, this.#stage),
    result: find('.layer.result', HTMLElement, this.#stage)
  };
  #split = 50;
  #isOriginal = false;

  constructor() {
    this.#divider.addEventListener('keydown', (event) => this.#onKey(event));
    this.#followPointer();
    this.#button.addEventListener('click', () => this.toggleOriginal());
    document.addEventListener('keydown', (event) => {
      const { key, ctrlKey, altKey, metaKey, repeat, target } = event;
      if (key.toLowerCase() !== 'b' || ctrlKey || altKey || metaKey || repeat) return;
      if (target instanceof HTMLSelectElement || this.#button.disabled) return; // letters choose from lists
      this.toggleOriginal();
    });
    this.#place();
  }

  /** @param {import('./session.js').Session} session */
  show({ original, result }) {
    this.clear();
    this.#layers.original.prepend(original);
    this.#layers.result.prepend(result);
    this.#button.disabled = false;
    delete this.#stage.dataset.empty;
    this.fit(original);
  }

  clear() {
    for (const layer of Object.values(this.#layers)) layer.querySelector('canvas, video')?.remove();
    this.#button.disabled = true;
    this.#stage.dataset.empty = '';
    this.#setOriginal(false);
  }

  /** Takes the shape of what an element shows. @param {HTMLCanvasElement | HTMLVideoElement} element */
  fit(element) {
    const { width, height } = sizeOf(element);
    if (width && height) this.#stage.style.setProperty('--ratio', String(width / height));
  }

  /** @param {boolean} isBusy */
  set busy(isBusy) {
    this.#stage.setAttribute('aria-busy', String(isBusy));
  }

  /** @param {boolean} isMirrored */
  set mirrored(isMirrored) {
    this.#stage.toggleAttribute('data-mirrored', isMirrored);
  }

  toggleOriginal() {
    this.#setOriginal(!this.#isOriginal);
  }

  /** @param {boolean} isOriginal */
  #setOriginal(isOriginal) {
    this.#isOriginal = isOriginal;
    this.#button.setAttribute('aria-pressed', String(isOriginal));
    this.#place();
  }

  /** @param {number} percent */
  #move(percent) {
    this.#split = Math.min(100, Math.max(0, percent));
    this.#setOriginal(false);
  }

  #place() {
    const percent = this.#isOriginal ? 100 : this.#split;
    this.#stage.style.setProperty('--split', String(percent));
    const value = Math.round(percent);
    this.#divider.setAttribute('aria-valuenow', String(value));
    this.#divider.setAttribute('aria-valuetext', `${value} % original, ${100 - value} % result`);
  }

  /** @param {KeyboardEvent} event */
  #onKey(event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const step = event.shiftKey ? FAR : STEP;
    const from = this.#isOriginal ? 100 : this.#split;
    /** @type {Record<string, number>} */
    const places = {
      ArrowLeft: from - step,
      ArrowDown: from - step,
      ArrowRight: from + step,
      ArrowUp: from + step,
      PageDown: from - FAR,
      PageUp: from + FAR,
      Home: 0,
      End: 100
    };
    if (!(event.key in places)) return;
    event.preventDefault();
    this.#move(places[event.key]);
  }

  /** A mouse or pen takes the divider where it presses; a finger first shows that it goes sideways, not up the page. */
  #followPointer() {
    /** @type {number | null} */
    let begin = null;
    let isDragging = false;
    const take = (/** @type {PointerEvent} */ event) => {
      const { left, width } = this.#frame.getBoundingClientRect();
      this.#move(((event.clientX - left) / width) * 100);
    };
    this.#frame.addEventListener('pointerdown', (event) => {
      if (event.button !== 0 || !event.isPrimary) return;
      begin = event.clientX;
      isDragging = event.pointerType !== 'touch';
      this.#frame.setPointerCapture(event.pointerId);
      if (isDragging) take(event);
    });
    this.#frame.addEventListener('pointermove', (event) => {
      if (begin === null || !event.isPrimary) return;
      isDragging ||= Math.abs(event.clientX - begin) > SLOP;
      if (isDragging) take(event);
    });
    const end = (/** @type {PointerEvent} */ event) => {
      if (begin !== null && event.type === 'pointerup') take(event);
      begin = null;
    };
    this.#frame.addEventListener('pointerup', end);
    this.#frame.addEventListener('pointercancel', end);
  }
}

/// Play, pause and position of a video file.
import { find } from './page.js';

/** @param {number} seconds */
function clock(seconds) {
  const whole = Math.floor(seconds);
  return `${Math.floor(whole / 60)}:${String(whole % 60).padStart(2, '0')}`;
}

export class Player {
  #bar = find('#player', HTMLElement);
  #button = find('#play', HTMLButtonElement);
  #seek = find('#seek', HTMLInputElement);
  #time = find('#time', HTMLElement);
  /** @type {HTMLVideoElement | null} */
  #video = null;
  #listening = new AbortController();

  constructor() {
    this.#button.addEventListener('click', () => {
      if (this.#video?.paused) this.#video.play().catch(() => {});
      else this.#video?.pause();
    });
    this.#seek.addEventListener('input', () => {
      if (this.#video) this.#video.currentTime = Number(this.#seek.value);
    });
  }

  /** What the bar plays; null hides it. */
  set video(/** @type {HTMLVideoElement | null} */ video) {
    this.#listening.abort();
    this.#listening = new AbortController();
    this.#video = video;
    this.#bar.hidden = !video;
    if (!video) return;
    const update = () => this.#update(video);
    for (const type of ['play', 'pause', 'timeupdate', 'durationchange']) {
      video.addEventListener(type, update, this.#listening);
    }
    update();
  }

  /** @param {HTMLVideoElement} video */
  #update({ paused, currentTime, duration }) {
    this.#button.textContent = paused ? 'Play' : 'Pause';
    // A recording of a browser may not know its length.
    const isKnown = Number.isFinite(duration);
    this.#seek.hidden = !isKnown;
    if (isKnown) this.#seek.max = String(duration);
    this.#seek.value = String(currentTime);
    const words = isKnown ? `${clock(currentTime)} of ${clock(duration)}` : clock(currentTime);
    this.#seek.setAttribute('aria-valuetext', words);
    this.#time.textContent = isKnown ? `${clock(currentTime)} / ${clock(duration)}` : clock(currentTime);
  }
}

/// The button that records.
import { find } from './page.js';
import { Recording, canRecord } from './recorder.js';
import { resultName, saveFile } from './save.js';

export class RecordingButton {
  #button = find('#record', HTMLButtonElement);
  /** @type {import('./session.js').Session | null} */
  #session = null;
  /** @type {Recording | null} */
  #recording = null;
  #onError;

  /** @param {(error: unknown) => void} onError */
  constructor(onError) {
    this.#onError = onError;
    this.#button.addEventListener('click', () => (this.#recording ? this.#recording.stop() : this.#record()));
  }

  /** What would be recorded from now on; a recording of another session is finished and saved. */
  set session(/** @type {import('./session.js').Session | null} */ session) {
    this.#recording?.stop();
    this.#session = session;
    this.#button.hidden = !session?.track || !canRecord();
  }

  async #record() {
    const { track, name } = this.#session ?? {};
    if (!track || !name) return;
    let ticking;
    try {
      const recording = new Recording(track);
      this.#recording = recording;
      this.#button.setAttribute('aria-pressed', 'true');
      const tick = () => (this.#button.textContent = `Stop and save · ${recording.seconds} s`);
      tick();
      ticking = setInterval(tick, 500);
      const blob = await recording.finished;
      if (blob.size) saveFile(blob, resultName(name, recording.ending));
    } catch (error) {
      this.#onError(error);
    } finally {
      clearInterval(ticking);
      this.#recording = null;
      this.#button.setAttribute('aria-pressed', 'false');
      this.#button.textContent = 'Record';
    }
  }
}

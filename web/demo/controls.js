/// The settings: a form, whose initial values are the engine's defaults, and the look that it says.
import { find, say } from './page.js';

/** @typedef {import('./session.js').Look} Look */

/** @type {Record<string, (value: number) => string>} */
const SPELLING = {
  whitening: (value) => `${value} %`,
  radius: (value) => `${value} px`
};

export class Controls {
  #form = find('#look', HTMLFormElement);
  #radius = find('#radius', HTMLInputElement);
  #removeTable = find('#remove-table', HTMLButtonElement);
  #tableName = find('#table-name', HTMLElement);
  #tableMessage = find('#table-message', HTMLElement);
  #onChange;
  /** @type {Uint8Array<ArrayBuffer> | null} */
  #table = null;
  /** Whether something is open: only then is a table checked. */
  canTry = false;

  /**
   * @param {(look: Look) => void} onChange  throws where a table is bad
   */
  constructor(onChange) {
    this.#onChange = onChange;
    this.#form.addEventListener('input', () => this.#change());
    this.#form.addEventListener('submit', (event) => event.preventDefault());
    // The form has its initial values only after this event.
    this.#form.addEventListener('reset', () => setTimeout(() => this.#reset()));
    this.#removeTable.addEventListener('click', () => this.#dropTable());
    const choice = find('#table', HTMLInputElement);
    const button = find('#choose-table', HTMLButtonElement);
    button.addEventListener('click', () => choice.click());
    choice.addEventListener('input', (event) => event.stopPropagation());
    choice.addEventListener('change', () => {
      const file = choice.files?.[0];
      if (file) this.readTable(file);
      choice.value = ''; // so that the same file can be chosen again
    });
    this.#spell();
  }

  /** @returns {Look} */
  get look() {
    const data = new FormData(this.#form);
    const numberOf = (/** @type {string} */ name) => Number(data.get(name));
    return {
      whitening: numberOf('whitening'),
      softening: numberOf('softening'),
      radius: data.has('autoRadius') ? 'auto' : numberOf('radius'),
      contrast: data.get('contrast') === 'absolute' ? 'absolute' : 'relative',
      whitenArea: data.get('whitenArea') === 'skin' ? 'skin' : 'all',
      evenTone: numberOf('evenTone'),
      table: this.#table
    };
  }

  /**
   * Takes a colour table, if it is one; says so if not, and keeps the one of before.
   *
   * @param {File} file
   */
  async readTable(file) {
    try {
      const table = new Uint8Array(await file.arrayBuffer());
      if (!this.canTry) throw new Error('open a picture first, to try it on');
      this.#onChange({ ...this.look, table });
      this.#table = table;
      this.#showTable(file.name);
    } catch (error) {
      const { message } = /** @type {Error} */ (error);
      say(this.#tableMessage, `${file.name}: ${message.replace(/^look\.table: /, '')}`);
    }
  }

  #dropTable() {
    this.#table = null;
    this.#showTable(null);
    find('#choose-table', HTMLButtonElement).focus();
    this.#change();
  }

  #reset() {
    this.#table = null;
    this.#showTable(null);
    this.#change();
  }

  #change() {
    say(this.#tableMessage, '');
    this.#spell();
    this.#onChange(this.look);
  }

  /** @param {string | null} name */
  #showTable(name) {
    this.#tableName.textContent = name ?? 'None';
    this.#removeTable.hidden = name === null;
    say(this.#tableMessage, '');
  }

  /** Writes the values beside their sliders. */
  #spell() {
    this.#radius.disabled = this.look.radius === 'auto';
    for (const output of this.#form.querySelectorAll('output')) {
      const name = output.htmlFor.value;
      const value = Number(find(`#${name}`, HTMLInputElement).value);
      const isAutomatic = name === 'radius' && this.#radius.disabled;
      output.value = isAutomatic ? 'Automatic' : (SPELLING[name]?.(value) ?? String(value));
    }
  }
}

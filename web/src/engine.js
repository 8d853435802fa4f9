/// An engine in a module's memory, with room for one frame, which is processed in place.
import { FRAME_BYTES, SETTINGS_BYTES, writeFrame, writeSettings } from './layouts.js';

/** @typedef {import('./layouts.js').EngineFrame} EngineFrame */

const TEXT_BYTES = 200;

export class Engine {
  #module;
  #settings = 0; // addresses
  #frame = 0;
  #text = 0;
  #makeup = 0;
  #samples = 0;
  #room = 0;

  /** @param {import('./module.js').EngineExports} module  started, for this engine alone */
  constructor(module) {
    this.#module = module;
    this.#settings = this.#allocate(SETTINGS_BYTES + FRAME_BYTES + TEXT_BYTES + 4);
    this.#frame = this.#settings + SETTINGS_BYTES;
    this.#text = this.#frame + FRAME_BYTES;
    const created = this.#text + TEXT_BYTES;
    this.#check(module.vlvkMakeupCreate(created, 0));
    this.#makeup = this.#view().getUint32(created, true);
  }

  /**
   * From the next frame on.
   *
   * @param {import('./look.js').Settings} settings
   */
  configure(settings) {
    this.#module.vlvkSettingsInit(this.#settings, SETTINGS_BYTES);
    writeSettings(this.#view(), this.#settings, settings);
    this.#check(this.#module.vlvkMakeupConfigure(this.#makeup, this.#settings));
  }

  /**
   * From the next frame on.
   *
   * @param {Uint8Array | null} file
   */
  setTable(file) {
    if (file === null) {
      this.#check(this.#module.vlvkMakeupSetTable(this.#makeup, 0, 0));
      return;
    }
    const address = this.#allocate(file.length);
    this.#bytes(address, file.length).set(file);
    const result = this.#module.vlvkMakeupSetTable(this.#makeup, address, file.length);
    this.#module.free(address);
    this.#check(result);
  }

  /**
   * Room for a frame; the one before is gone.
   *
   * @param {number} bytes
   * @returns {Uint8Array<ArrayBuffer>} good until the engine is called again
   */
  reserve(bytes) {
    if (bytes > this.#room) {
      if (this.#samples !== 0) this.#module.free(this.#samples);
      this.#samples = this.#room = 0;
      this.#samples = this.#allocate(bytes);
      this.#room = bytes;
    }
    return this.frameBytes(bytes);
  }

  /**
   * The frame's bytes, anew: memory that has grown takes all views of it away.
   *
   * @param {number} bytes
   */
  frameBytes(bytes) {
    return this.#bytes(this.#samples, bytes);
  }

  /**
   * Processes the frame that lies in its room.
   *
   * @param {EngineFrame} frame
   * @returns {number} milliseconds
   */
  process(frame) {
    writeFrame(this.#view(), this.#frame, frame, this.#samples);
    const begin = performance.now();
    const result = this.#module.vlvkMakeupProcess(this.#makeup, this.#frame, this.#frame, 0);
    const milliseconds = performance.now() - begin;
    if (result !== 0) {
      this.#module.vlvkFrameCheck(this.#frame, this.#text, TEXT_BYTES);
      throw new Error(`frame refused: ${this.#textAt(this.#text) || this.#resultText(result)}`);
    }
    return milliseconds;
  }

  /** Bytes of the module's memory. */
  get memoryBytes() {
    return this.#module.memory.buffer.byteLength;
  }

  /** @param {number} result */
  #check(result) {
    if (result !== 0) throw new Error(this.#resultText(result));
  }

  /** @param {number} result */
  #resultText(result) {
    return this.#textAt(this.#module.vlvkResultText(result) >>> 0);
  }

  /** @param {number} address */
  #textAt(address) {
    const bytes = new Uint8Array(this.#module.memory.buffer, address);
    return new TextDecoder().decode(bytes.slice(0, bytes.indexOf(0)));
  }

  /**
   * A module's numbers are signed, and it takes 32 bits of what it is given.
   *
   * @param {number} bytes
   */
  #allocate(bytes) {
    const address = bytes < 2 ** 32 ? this.#module.malloc(bytes) >>> 0 : 0;
    if (address === 0) throw new Error(`no memory for ${bytes} bytes`);
    return address;
  }

  #view() {
    return new DataView(this.#module.memory.buffer);
  }

  /**
   * @param {number} address
   * @param {number} length
   */
  #bytes(address, length) {
    return new Uint8Array(this.#module.memory.buffer, address, length);
  }
}

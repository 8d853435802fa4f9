/// What the tests have in common: modules, samples, frames without a browser.
import { readFile } from 'node:fs/promises';
import { Engine } from '../src/engine.js';
import { readLook, settingsOf } from '../src/look.js';
import { startModule } from '../src/module.js';

export function moduleBytes(name) {
  return readFile(new URL(`../src/${name}.wasm`, import.meta.url));
}

export async function startEngine(name, look) {
  const engine = new Engine(await startModule(await moduleBytes(name), name));
  applyLook(engine, look);
  return engine;
}

export function applyLook(engine, look) {
  const complete = readLook(look);
  engine.configure(settingsOf(complete));
  engine.setTable(complete.table);
}

/** Samples about the colours of skin, always the same. */
export function samples(bytes, seed = 1) {
  let state = seed;
  return Uint8Array.from({ length: bytes }, (_, i) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return 110 + ((i >> 3) % 40) + (state >>> 27);
  });
}

/** A table that turns all colours round by half a turn. */
export function tableFile() {
  const file = new Uint8Array(12 + 512 * 512 * 4);
  new DataView(file.buffer).setUint32(4, 2048, true);
  new DataView(file.buffer).setUint32(8, 512, true);
  for (let i = 12; i < file.length; ++i) file[i] = (i * 37) >> 5;
  return file;
}

/** A VideoFrame as far as the sources use one, which counts how often it was closed. */
export class FakeFrame {
  static all = [];
  [Symbol.toStringTag] = 'VideoFrame';
  closed = 0;

  constructor(data, init) {
    FakeFrame.all.push(this);
    this.data = new Uint8Array(data);
    Object.assign(this, { displayWidth: init.visibleRect?.width ?? init.codedWidth, duration: null }, init);
    this.displayHeight = init.displayHeight ?? init.visibleRect?.height ?? init.codedHeight;
    this.colorSpace = { ...init.colorSpace, toJSON: () => init.colorSpace };
  }

  async copyTo(target, options) {
    if (this.broken) throw new Error('no access');
    this.options = options;
    target.set(this.data);
  }

  close() {
    this.closed += 1;
  }
}

export function pixelFrame(timestamp = 0) {
  return new FakeFrame(samples(16 * 8 * 4), { format: 'RGBA', codedWidth: 16, codedHeight: 8, timestamp });
}

/// Where the members of the engine's structures lie in a module's memory, whose addresses and integers have 4 bytes.
/// Mirrors vlvk/makeup.h.

export const SETTINGS_BYTES = 32;
export const FRAME_BYTES = 56;

const SETTINGS = {
  whitening: 4,
  softening: 8,
  radius: 12,
  contrast: 16,
  whitenArea: 20,
  evenTone: 24,
  threads: 28
};

const FRAME = { size: 0, format: 4, matrix: 8, range: 12, width: 16, height: 20, plane: 24, stride: 40 };

/**
 * @typedef {object} EngineFrame  a frame in the engine's memory
 * @property {number} format
 * @property {number} matrix
 * @property {number} range
 * @property {number} width
 * @property {number} height
 * @property {{offset: number, stride: number}[]} planes  at most 4, offsets from where the frame begins
 */

/**
 * @param {DataView} memory
 * @param {number} address  of settings filled with the defaults
 * @param {import('./look.js').Settings} settings
 */
export function writeSettings(memory, address, settings) {
  for (const [name, value] of Object.entries({ ...settings, threads: 1 })) {
    memory.setInt32(address + SETTINGS[/** @type {keyof typeof SETTINGS} */ (name)], value, true);
  }
}

/**
 * @param {DataView} memory
 * @param {number} address  of the structure
 * @param {EngineFrame} frame
 * @param {number} samples  the address where the frame begins
 */
export function writeFrame(memory, address, frame, samples) {
  memory.setInt32(address + FRAME.size, FRAME_BYTES, true);
  for (const name of /** @type {const} */ (['format', 'matrix', 'range', 'width', 'height'])) {
    memory.setInt32(address + FRAME[name], frame[name], true);
  }
  for (let i = 0; i < 4; ++i) {
    const plane = frame.planes[i];
    memory.setUint32(address + FRAME.plane + 4 * i, plane ? samples + plane.offset : 0, true);
    memory.setInt32(address + FRAME.stride + 4 * i, plane ? plane.stride : 0, true);
  }
}

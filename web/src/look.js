/// A look: what a page asks for, checked before it reaches the worker.

/**
 * @typedef {import('./index.js').Look} Look
 * @typedef {import('./index.js').CompleteLook} CompleteLook
 */

/** A table file: signature, two factors of the payload's size, payload. */
const TABLE_HEADER = 12;
const TABLE_PAYLOAD = 512 * 512 * 4;

const AREAS = /** @type {const} */ (['all', 'skin']);
const CONTRASTS = /** @type {const} */ (['relative', 'absolute']);

/** The members of a look, each with its default and what it takes. */
const MEMBERS = {
  whitening: { initial: 50, most: 100, words: [] },
  softening: { initial: 1000, most: 1000, words: [] },
  radius: { initial: 'auto', most: 128, words: ['auto'] },
  contrast: { initial: 'relative', most: -1, words: CONTRASTS },
  whitenArea: { initial: 'all', most: -1, words: AREAS },
  evenTone: { initial: 0, most: 1000, words: [] }
};

/** @param {unknown} value */
function spelled(value) {
  if (typeof value === 'string') return `'${value}'`;
  if (Array.isArray(value)) return 'an array';
  return typeof value === 'object' && value !== null ? 'an object' : String(value);
}

/**
 * @param {string} name
 * @param {unknown} value
 * @param {{most: number, words: readonly string[]}} takes
 */
function checkMember(name, value, { most, words }) {
  if (typeof value === 'string' && words.includes(value)) return;
  if (typeof value === 'number' && Number.isInteger(value) && value >= 0 && value <= most) return;
  const choices = words.map((word) => `'${word}'`);
  if (most >= 0) choices.push(`a whole number from 0 to ${most}`);
  throw new RangeError(`look.${name}: ${spelled(value)} is not ${choices.join(' or ')}`);
}

/**
 * The payload's size. Bytes of the factors are signed, and factors and product wrap at 32 bits.
 *
 * @param {Uint8Array} file
 */
function payloadSize(file) {
  const factor = (/** @type {number} */ at) => {
    const [a, b, c, d] = new Int8Array(file.buffer, file.byteOffset + at, 4);
    return (a + (b << 8) + (c << 16) + (d << 24)) | 0;
  };
  return Math.imul(factor(4), factor(8));
}

/**
 * A copy of a table file, without what follows its end.
 *
 * @param {unknown} table
 * @returns {Uint8Array<ArrayBuffer> | null}
 */
function readTable(table) {
  if (table === null || table === undefined) return null;
  const isBuffer = Object.prototype.toString.call(table) === '[object ArrayBuffer]';
  const isBytes = Object.prototype.toString.call(table) === '[object Uint8Array]';
  if (!isBuffer && !isBytes) throw new TypeError('look.table: not an ArrayBuffer, a Uint8Array or null');
  const { byteLength } = /** @type {ArrayBuffer | Uint8Array} */ (table);
  if (byteLength === 0) throw new RangeError('look.table: empty, or transferred away');
  const file = isBytes ? /** @type {Uint8Array} */ (table) : new Uint8Array(/** @type {ArrayBuffer} */ (table));
  const whole = TABLE_HEADER + TABLE_PAYLOAD;
  if (byteLength < TABLE_HEADER || payloadSize(file) !== TABLE_PAYLOAD) {
    throw new RangeError('look.table: not a colour table (adjust.vlk)');
  }
  if (byteLength < whole) throw new RangeError(`look.table: cut off, ${byteLength} of ${whole} bytes`);
  return new Uint8Array(file.subarray(0, whole));
}

/**
 * Completes a look with the defaults.
 *
 * @param {unknown} look  undefined: all defaults
 * @param {CompleteLook} [before]  the look that it replaces, whose table is kept without another copy if it is the same
 * @returns {CompleteLook} frozen, with a table of its own
 * @throws {RangeError} with the name of the member
 */
export function readLook(look, before) {
  if (look === undefined) look = {};
  // Neither an array nor a Map has members of a look.
  if (Object.prototype.toString.call(look) !== '[object Object]') {
    throw new TypeError(`look: ${spelled(look)} is not an object with settings`);
  }
  const given = /** @type {Record<string, unknown>} */ (look);
  /** @type {Record<string, unknown>} */
  const read = {};
  for (const [name, takes] of Object.entries(MEMBERS)) {
    const value = given[name];
    if (value !== undefined) checkMember(name, value, takes);
    read[name] = value ?? takes.initial;
    if (value === 0) read[name] = 0; // without a sign
  }
  for (const name of Object.keys(given)) {
    if (!Object.hasOwn(MEMBERS, name) && name !== 'table') {
      throw new RangeError(`look.${name}: there is no such setting`);
    }
  }
  read.table = before?.table && given.table === before.table ? before.table : readTable(given.table);
  return /** @type {CompleteLook} */ (Object.freeze(read));
}

/**
 * A look in the numbers of VlvkSettings.
 *
 * @param {CompleteLook} look
 */
export function settingsOf(look) {
  return {
    whitening: look.whitening,
    softening: look.softening,
    radius: look.radius === 'auto' ? -1 : look.radius,
    contrast: CONTRASTS.indexOf(look.contrast),
    whitenArea: AREAS.indexOf(look.whitenArea),
    evenTone: look.evenTone
  };
}

/** @typedef {ReturnType<typeof settingsOf>} Settings */

/// Looks: defaults, what is refused and in which words, tables.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { readLook } from '../src/look.js';
import { tableFile } from './support.js';

test('a look is completed, frozen, and has a table of its own', () => {
  const defaults = {
    whitening: 50, softening: 1000, radius: 'auto', contrast: 'relative', whitenArea: 'all', evenTone: 0, table: null
  };
  assert.deepEqual({ ...readLook(undefined) }, defaults);
  assert.deepEqual({ ...readLook({ radius: 128, evenTone: undefined }) }, { ...defaults, radius: 128 });
  assert.ok(Object.isFrozen(readLook({})));
  const file = tableFile();
  const longer = new Uint8Array([...file, 9, 9, 9]);
  const look = readLook({ table: longer.buffer });
  longer.fill(0);
  assert.deepEqual(look.table, file);
  assert.equal(readLook({ ...look, whitening: 1 }, look).table, look.table);
  assert.deepEqual(readLook({ table: Buffer.concat([Buffer.from('x'), file]).subarray(1) }).table, file);
  assert.ok(Object.is(readLook({ radius: -0 }).radius, 0));
});

test('a bad member is named', () => {
  const bad = {
    whitening: [101, -1, 0.5, NaN, '50', null], softening: [1001], radius: [129, -1, 'large'], contrast: [0, 'abs'],
    whitenArea: ['hair'], evenTone: [Infinity], whitning: [3],
    constructor: [3]
  };
  for (const [name, values] of Object.entries(bad)) {
    for (const value of values) {
      const message = new RegExp(`^look\\.${name}: `);
      assert.throws(() => readLook({ [name]: value }), { name: 'RangeError', message });
    }
  }
  for (const look of [null, 3, 'warm', [], new Map()]) {
    assert.throws(() => readLook(look), { name: 'TypeError', message: /^look: / });
  }
});

test('a bad table is named', () => {
  const scaled = tableFile();
  scaled[5] = 0xf8; // a factor's bytes are signed
  const { buffer: moved } = tableFile();
  structuredClone(moved, { transfer: [moved] });
  for (const table of [new Uint8Array(0), scaled, tableFile().subarray(0, -1), new ArrayBuffer(2e6), moved]) {
    assert.throws(() => readLook({ table }), { name: 'RangeError', message: /^look\.table: / });
  }
  for (const table of [[], 'adjust.vlk', new Float32Array(9)]) {
    assert.throws(() => readLook({ table }), { name: 'TypeError', message: /^look\.table: / });
  }
});

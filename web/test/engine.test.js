// Both modules against each other, and against the program where it has been built: VLVK_MAKEUP, or build-release.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Engine } from '../src/engine.js';
import { readLook } from '../src/look.js';
import { startModule } from '../src/module.js';
import { applyLook, moduleBytes, samples, startEngine, tableFile } from './support.js';

const program = process.env.VLVK_MAKEUP ?? fileURLToPath(new URL('../../build-release/vlvk-makeup', import.meta.url));

const looks = [
  {},
  { whitening: 100, softening: 300, radius: 16, contrast: 'absolute' },
  { whitening: 80, whitenArea: 'skin', evenTone: 700 },
  { whitening: 0, softening: 0, table: tableFile() }
];

// Chroma planes of odd sizes are rounded up, rows have no gaps.
function frameOf(format, width, height) {
  const half = { width: (width + 1) >> 1, height: (height + 1) >> 1 };
  const luma = width * height;
  const chroma = half.width * half.height;
  const planes = {
    i420: [
      { offset: 0, stride: width }, { offset: luma, stride: half.width }, { offset: luma + chroma, stride: half.width }
    ],
    nv12: [{ offset: 0, stride: width }, { offset: luma, stride: 2 * half.width }],
    rgba: [{ offset: 0, stride: 4 * width }],
    bgrx: [{ offset: 0, stride: 4 * width }]
  }[format];
  const number = { i420: 3, nv12: 1, rgba: 16, bgrx: 19 }[format];
  const bytes = number < 16 ? luma + 2 * chroma : 4 * luma;
  return { bytes, frame: { format: number, matrix: 6, range: 0, width, height, planes } };
}

function run(engine, { bytes, frame }, source) {
  engine.reserve(bytes).set(source);
  engine.process(frame);
  return Buffer.from(engine.frameBytes(bytes));
}

function optionsOf(look, folder) {
  const { whitening, whitenArea, softening, radius, contrast, evenTone, table } = readLook(look);
  const options = {
    whiten: whitening, 'whiten-area': whitenArea, soften: softening, radius, contrast, 'even-tone': evenTone
  };
  if (table) writeFileSync(join(folder, 'table.vlk'), table);
  if (table) options.table = join(folder, 'table.vlk');
  return Object.entries(options).flatMap(([name, value]) => [`--${name}`, String(value)]);
}

test('both modules give the bytes of the program', async (context) => {
  const native = existsSync(program);
  if (!native) context.diagnostic('without the program: it has not been built');
  const folder = mkdtempSync(join(tmpdir(), 'vlvk-'));
  context.after(() => rmSync(folder, { recursive: true }));
  const simd = await startEngine('simd');
  const scalar = await startEngine('scalar');
  for (const look of looks) {
    applyLook(simd, look);
    applyLook(scalar, look);
    for (const [format, width, height] of [
      ['i420', 64, 48], ['nv12', 61, 45], ['i420', 1, 3], ['nv12', 130, 70], ['rgba', 61, 45], ['bgrx', 64, 48]
    ]) {
      const plan = frameOf(format, width, height);
      const source = samples(plan.bytes, width);
      const result = run(simd, plan, source);
      const what = `${format} ${width}x${height} ${JSON.stringify({ ...look, table: Boolean(look.table) })}`;
      assert.ok(result.equals(run(scalar, plan, source)), `scalar: ${what}`);
      if (width > 1) assert.ok(!result.equals(source), `unchanged: ${what}`);
      if (!native || plan.frame.format >= 16) continue;
      writeFileSync(join(folder, 'in.yuv'), source);
      const paths = [join(folder, 'in.yuv'), join(folder, 'out.yuv')];
      const given = ['--format', format, '--size', `${width}x${height}`, '--quiet', ...optionsOf(look, folder)];
      execFileSync(program, ['video', ...paths, ...given]);
      assert.ok(result.equals(readFileSync(paths[1])), `program: ${what}`);
    }
  }
});

test('memory stays as it is from frame to frame, and grows for a larger one', async () => {
  const engine = await startEngine('simd', { evenTone: 500, table: tableFile() });
  const small = frameOf('i420', 640, 360);
  const source = samples(small.bytes);
  run(engine, small, source);
  const before = engine.memoryBytes;
  const first = run(engine, small, source);
  for (let i = 0; i < 200; ++i) {
    if (i % 20 === 0) applyLook(engine, { evenTone: 500, table: tableFile() });
    run(engine, i % 3 === 0 ? frameOf('i420', 320, 180) : small, source.subarray(0, i % 3 === 0 ? 86400 : undefined));
  }
  assert.ok(engine.memoryBytes - before <= 1 << 21, `${engine.memoryBytes - before} bytes more`);
  const settled = engine.memoryBytes;
  for (let i = 0; i < 200; ++i) run(engine, small, source);
  assert.equal(engine.memoryBytes, settled);
  run(engine, frameOf('rgba', 1920, 1080), samples(1920 * 1080 * 4));
  assert.ok(engine.memoryBytes > settled);
  assert.ok(run(engine, small, source).equals(first));
});

test('what is refused is refused with words', async () => {
  const engine = await startEngine('simd');
  const { bytes, frame } = frameOf('i420', 64, 48);
  engine.reserve(bytes);
  const narrow = { ...frame, planes: frame.planes.map((plane) => ({ ...plane, stride: 8 })) };
  assert.throws(() => engine.process(narrow), /^Error: frame refused: plane 0: stride 8/);
  assert.throws(() => engine.process({ ...frame, matrix: 2 }), /frame refused: .*matrix/);
  assert.throws(() => engine.setTable(new Uint8Array(40)), /table/);
  assert.throws(() => engine.configure({ ...frame, whitening: 101 }), /./);
  for (const large of [2 ** 32 - 2 ** 20, 2 ** 32 + 64]) assert.throws(() => engine.reserve(large), /no memory/);
  await assert.rejects(startModule(new Uint8Array(9), 'x.wasm'), /^Error: x.wasm: not a WebAssembly module/);
  const empty = new Uint8Array([0, 97, 115, 109, 1, 0, 0, 0]);
  await assert.rejects(startModule(empty, 'x.wasm'), /^Error: x.wasm: not a module of this package/);
});

test('addresses beyond 2 GiB are no negative numbers', { timeout: 60000 }, async () => {
  const module = await startModule(await moduleBytes('simd'), 'simd');
  for (let i = 0; i < 2; ++i) assert.notEqual(module.malloc(2 ** 30), 0);
  const engine = new Engine(module);
  const { bytes, frame } = frameOf('i420', 64, 48);
  const source = samples(bytes);
  assert.ok(run(engine, { bytes, frame }, source).equals(run(await startEngine('simd'), { bytes, frame }, source)));
});

test('modules have the version of the package', async () => {
  const { version } = JSON.parse(readFileSync(new URL('../package.json', import.meta.url), 'utf8'));
  const [major, minor, patch] = version.split('.').map(Number);
  for (const name of ['simd', 'scalar']) {
    const module = await startModule(await moduleBytes(name), name);
    assert.equal(module.vlvkVersion(), major * 1e6 + minor * 1e3 + patch);
    assert.deepEqual(WebAssembly.Module.imports(new WebAssembly.Module(await moduleBytes(name))), []);
  }
});

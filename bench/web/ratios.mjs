// Ratios of the times that bench/web/frame_times.cpp prints, natively and as WebAssembly, in turns: a machine whose speed
// drifts slows all of them.
//
//     node ratios.mjs NATIVE SIMD_MODULE SCALAR_MODULE [WIDTH HEIGHT]
import {execFileSync} from 'node:child_process';
import {fileURLToPath} from 'node:url';

const rounds = 15;
const [native, simd, scalar, width = '1280', height = '720'] = process.argv.slice(2);
const runner = fileURLToPath(new URL('../../tests/web/run_wasi.mjs', import.meta.url));

/** Kind of frame -> milliseconds. */
function times(command, args, target, frames) {
  const printed = execFileSync(command, [...args, target, width, height, String(frames)], {encoding: 'utf8'});
  return new Map(printed.trim().split('\n').map(line => [line.replace(/ [^ ]*$/, ''), Number(line.split(' ').pop())]));
}
const wasm = (file, target, frames) => times(process.execPath, ['--no-warnings', runner, file], target, frames);

const found = [];
for (let round = 0; round < rounds; ++round) {
  found.push({
    sse2: times(native, [], 'sse2', 60),
    simd: wasm(simd, 'wasm128', 60),
    scalar: wasm(scalar, 'scalar', 12),
  });
}

function median(values) {
  return values.sort((a, b) => a - b)[values.length >> 1];
}
console.log(`NV21 in place, ${width}x${height}, one thread, medians of ${rounds} rounds`);
for (const kind of found[0].simd.keys()) {
  const ms = name => median(found.map(round => round[name].get(kind))).toFixed(2);
  const ratio = (a, b) => median(found.map(round => round[a].get(kind) / round[b].get(kind))).toFixed(2);
  console.log(`${kind}: SIMD module ${ms('simd')} ms, SSE2 ${ms('sse2')} ms, scalar module ${ms('scalar')} ms; ` +
    `SIMD module by SSE2 ${ratio('simd', 'sse2')}, scalar module by SIMD module ${ratio('scalar', 'simd')}`);
}

/// What `createBeautyTrack` and `Beautifier.create` may be given.

const NAMES = ['look', 'signal', 'workerUrl', 'wasmUrl'];

/** @param {import('./index.js').Options} options */
export function checkOptions(options) {
  for (const name of Object.keys(options)) {
    if (!NAMES.includes(name)) throw new RangeError(`options.${name}: there is no such option`);
  }
  const { signal } = options;
  if (signal !== undefined && !(signal instanceof AbortSignal)) {
    throw new TypeError('options.signal: not an AbortSignal');
  }
}

/// Finding and starting the WebAssembly module.

/**
 * @typedef {object} EngineExports  the functions of vlvk/makeup.h; pointers are numbers
 * @property {WebAssembly.Memory} memory
 * @property {() => void} _initialize
 * @property {(bytes: number) => number} malloc
 * @property {(address: number) => void} free
 * @property {() => number} vlvkVersion
 * @property {(settings: number, size: number) => void} vlvkSettingsInit
 * @property {(makeup: number, settings: number) => number} vlvkMakeupCreate
 * @property {(makeup: number) => void} vlvkMakeupDestroy
 * @property {(makeup: number, settings: number) => number} vlvkMakeupConfigure
 * @property {(makeup: number, file: number, bytes: number) => number} vlvkMakeupSetTable
 * @property {(makeup: number, source: number, target: number, mask: number) => number} vlvkMakeupProcess
 * @property {(frame: number, text: number, size: number) => number} vlvkFrameCheck
 * @property {(result: number) => number} vlvkResultText
 */

const FUNCTIONS = [
  '_initialize', 'malloc', 'free', 'vlvkVersion', 'vlvkSettingsInit', 'vlvkMakeupCreate', 'vlvkMakeupDestroy',
  'vlvkMakeupConfigure', 'vlvkMakeupSetTable', 'vlvkMakeupProcess', 'vlvkFrameCheck', 'vlvkResultText'
];

/** The least module that needs vectors: a function that makes one. */
const WITH_VECTORS = new Uint8Array([
  0, 97, 115, 109, 1, 0, 0, 0, 1, 5, 1, 96, 0, 1, 123, 3, 2, 1, 0, 10, 10, 1, 8, 0, 65, 0, 253, 15, 253, 98, 11
]);

/** The address of the module that this browser runs best. */
export function ownModuleUrl() {
  return WebAssembly.validate(WITH_VECTORS)
    ? new URL('./simd.wasm', import.meta.url).href
    : new URL('./scalar.wasm', import.meta.url).href;
}

/**
 * Starts a module.
 *
 * @param {BufferSource} bytes
 * @param {string} url  for the words of an error
 * @returns {Promise<EngineExports>}
 */
export async function startModule(bytes, url) {
  if (!WebAssembly.validate(bytes)) throw new Error(`${url}: not a WebAssembly module that this browser can run`);
  const module = await WebAssembly.compile(bytes).catch((error) => {
    // The bytes are valid, so it is the page that forbids it.
    const isForbidden = error instanceof WebAssembly.CompileError;
    const need = isForbidden ? "; the page's content security policy needs script-src 'wasm-unsafe-eval'" : '';
    throw new Error(`${url}: cannot be compiled: ${error.message}${need}`);
  });
  const names = new Set(WebAssembly.Module.exports(module).map((entry) => entry.name));
  const missing = [...FUNCTIONS, 'memory'].find((name) => !names.has(name));
  if (missing) throw new Error(`${url}: not a module of this package, it has no ${missing}`);
  const { exports } = await WebAssembly.instantiate(module, {});
  const engine = /** @type {EngineExports} */ (/** @type {unknown} */ (exports));
  engine._initialize();
  return engine;
}

/**
 * Fetches a module and starts it.
 *
 * @param {string | null} wasmUrl  null: one of the package's own
 */
export async function loadModule(wasmUrl) {
  const url = wasmUrl ?? ownModuleUrl();
  let response;
  try {
    response = await fetch(url, { credentials: 'same-origin' });
  } catch (error) {
    throw new Error(`${url}: cannot be fetched: ${/** @type {Error} */ (error).message}`);
  }
  if (!response.ok) throw new Error(`${url}: cannot be fetched: HTTP status ${response.status}`);
  return startModule(await response.arrayBuffer(), url);
}

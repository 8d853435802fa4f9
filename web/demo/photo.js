/// A photo: decoded once, beautified anew with each look.
import { Beautifier } from '../src/index.js';

/** The largest canvas that phones have. */
const MOST_PIXELS = 4096 * 4096;

/** @param {Blob} file */
async function decode(file) {
  try {
    return await createImageBitmap(file);
  } catch {
    throw new Error('this browser cannot read the file as a picture');
  }
}

/** @param {ImageBitmap} bitmap */
function draw(bitmap) {
  const scale = Math.min(1, Math.sqrt(MOST_PIXELS / (bitmap.width * bitmap.height)));
  const canvas = document.createElement('canvas');
  canvas.width = Math.max(1, Math.floor(bitmap.width * scale));
  canvas.height = Math.max(1, Math.floor(bitmap.height * scale));
  const context = canvas.getContext('2d', { willReadFrequently: true });
  if (!context) throw new Error('no memory for so large a picture');
  context.drawImage(bitmap, 0, 0, canvas.width, canvas.height);
  return { canvas, pixels: context.getImageData(0, 0, canvas.width, canvas.height), isScaled: scale < 1 };
}

/**
 * Runs a task again when it was asked for meanwhile: once, however often it was asked for.
 *
 * @param {() => Promise<void>} task
 * @param {(error: Error) => void} onError
 */
function latestOnly(task, onError) {
  let isRunning = false;
  let isWanted = false;
  return async () => {
    isWanted = true;
    if (isRunning) return;
    isRunning = true;
    try {
      while (isWanted) {
        isWanted = false;
        await task();
      }
    } catch (error) {
      onError(/** @type {Error} */ (error));
    } finally {
      isRunning = false;
    }
  };
}

/**
 * @param {Blob} file
 * @param {{kind: 'file' | 'sample', name: string, words: string}} naming
 * @param {import('./session.js').Look} look
 * @param {AbortSignal} signal
 * @returns {Promise<import('./session.js').Session>}
 */
export async function openPhoto(file, naming, look, signal) {
  const bitmap = await decode(file);
  const { canvas: original, pixels, isScaled } = draw(bitmap);
  const size = isScaled ? `, made smaller: it has ${bitmap.width} × ${bitmap.height} pixels` : '';
  bitmap.close();

  const beautifier = await Beautifier.create({ look, signal });
  const result = document.createElement('canvas');
  result.width = original.width;
  result.height = original.height;
  const context = /** @type {CanvasRenderingContext2D} */ (result.getContext('2d'));
  const render = async () => context.putImageData(await beautifier.processPixels(pixels), 0, 0);
  try {
    await render();
  } catch (error) {
    beautifier.close();
    throw error;
  }

  /** @type {(error?: Error) => void} */
  let end = () => {};
  const closed = /** @type {Promise<void>} */ (
    new Promise((resolve, reject) => {
      end = (error) => (error && !signal.aborted ? reject(error) : resolve());
    })
  );
  const rerender = latestOnly(render, end);
  const setLook = (/** @type {import('./session.js').Look} */ next) => {
    beautifier.look = next;
    rerender();
  };
  signal.addEventListener('abort', () => {
    beautifier.close();
    end();
    original.width = result.width = 0; // frees their memory at once
  });
  return {
    kind: naming.kind,
    name: naming.name,
    words: naming.words + size,
    original,
    result,
    setLook,
    stats: () => beautifier.stats,
    closed
  };
}

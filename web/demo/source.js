/// From what a visitor chooses to a way of opening it.
import { openCamera } from './camera.js';
import { openPhoto } from './photo.js';
import { openVideo } from './video.js';

/** @typedef {import('./session.js').Opening} Opening */

const SAMPLE = new URL('../../samples/portrait.png', import.meta.url);

/** @param {string} [device] @returns {Opening} */
export function cameraSource(device) {
  return (look, signal) => openCamera(device, look, signal);
}

/** @type {Opening} */
export async function sampleSource(look, signal) {
  const response = await fetch(SAMPLE, { signal });
  if (!response.ok) throw new Error(`the sample picture cannot be fetched: HTTP status ${response.status}`);
  return openPhoto(await response.blob(), { kind: 'sample', name: 'portrait', words: 'Sample picture' }, look, signal);
}

/** @param {File} file @returns {Opening} */
export function fileSource(file) {
  return async (look, signal) => {
    try {
      return await (file.type.startsWith('image/')
        ? openPhoto(file, { kind: 'file', name: file.name, words: file.name }, look, signal)
        : openVideo(file, look, signal));
    } catch (error) {
      throw signal.aborted ? error : new Error(`${/** @type {Error} */ (error).message}: ${file.name}`);
    }
  };
}

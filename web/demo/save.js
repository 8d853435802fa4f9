/// Results as files.
import { sizeOf } from './session.js';

/** Milliseconds that a browser has to take a file before its address is forgotten. */
const HANDOVER = 60000;

/**
 * @param {Blob} blob
 * @param {string} name
 */
export function saveFile(blob, name) {
  const url = URL.createObjectURL(blob);
  const link = document.createElement('a');
  link.href = url;
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(url), HANDOVER);
}

/** A name for what became of a file. @param {string} name @param {string} ending */
export function resultName(name, ending) {
  return `${name.replace(/\.[^.]*$/, '')}-beautified.${ending}`;
}

/**
 * The result as it is now, a PNG of its full size.
 *
 * @param {HTMLCanvasElement | HTMLVideoElement} result
 * @returns {Promise<Blob>}
 */
export function pictureOf(result) {
  let canvas = result;
  if (!(canvas instanceof HTMLCanvasElement)) {
    canvas = Object.assign(document.createElement('canvas'), sizeOf(result));
    canvas.getContext('2d')?.drawImage(result, 0, 0);
  }
  const source = canvas;
  return new Promise((resolve, reject) => {
    source.toBlob((blob) => (blob ? resolve(blob) : reject(new Error('no memory for the picture'))), 'image/png');
  });
}

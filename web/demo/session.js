/// What is shown, whatever it came from.

/**
 * @typedef {import('../src/index.js').CompleteLook} CompleteLook
 * @typedef {import('../src/index.js').Look} Look
 * @typedef {import('../src/index.js').Stats} Stats
 */

/**
 * @typedef {object} Session  a source and its result; all of it is let go when the signal that it was opened with aborts
 * @property {'camera' | 'file' | 'sample'} kind
 * @property {string} name  for files that are saved
 * @property {string} words  what is shown
 * @property {HTMLCanvasElement | HTMLVideoElement} original
 * @property {HTMLCanvasElement | HTMLVideoElement} result  of the same size
 * @property {(look: Look) => void} setLook  throws where the look is bad, and keeps the one of before
 * @property {() => Stats} stats
 * @property {Promise<void>} closed  resolves at the end, rejects with what has broken the session
 * @property {MediaStreamTrack} [track]  of the result, where it moves
 * @property {HTMLVideoElement} [player]  of a video file
 * @property {string} [device]  the camera's
 * @property {boolean} [isFront]  the camera looks at its user
 * @property {() => Opening} [again]  opens the same once more, where it was left
 */

/**
 * @callback Opening  begins a session
 * @param {Look} look
 * @param {AbortSignal} signal
 * @returns {Promise<Session>}
 */

/**
 * Width and height in pixels of what an element shows; 0 before there is anything.
 *
 * @param {HTMLCanvasElement | HTMLVideoElement} element
 */
export function sizeOf(element) {
  return element instanceof HTMLVideoElement
    ? { width: element.videoWidth, height: element.videoHeight }
    : { width: element.width, height: element.height };
}

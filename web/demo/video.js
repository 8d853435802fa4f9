/// A video file. Its pictures go through a canvas, whose track every browser has, and which can be drawn again with
/// another look while the video is paused.
import { beautifyTrack } from './live.js';

/**
 * @typedef {object} Place  where a video is taken up
 * @property {number} time  seconds
 * @property {boolean} isPaused
 */

/**
 * @param {string} url
 * @param {Place} place
 * @param {AbortSignal} signal
 * @returns {Promise<HTMLVideoElement>}
 */
async function load(url, { time }, signal) {
  const player = document.createElement('video');
  player.muted = true;
  player.loop = true;
  player.playsInline = true;
  player.preload = 'auto';
  const unload = () => {
    player.pause();
    player.removeAttribute('src');
    player.load();
  };
  signal.addEventListener('abort', unload);
  await new Promise((resolve, reject) => {
    player.addEventListener('loadeddata', resolve, { once: true });
    player.addEventListener('error', () => reject(new Error('this browser cannot play the file')), { once: true });
    signal.addEventListener('abort', () => reject(signal.reason), { once: true });
    player.src = url;
    player.currentTime = time;
  });
  if (player.videoWidth === 0) throw new Error('there are no pictures in the file');
  return player;
}

/**
 * Draws each picture of a video on a canvas, as long as the signal allows.
 *
 * @param {HTMLVideoElement} player
 * @param {AbortSignal} signal
 */
function copyPictures(player, signal) {
  const canvas = document.createElement('canvas');
  canvas.width = player.videoWidth;
  canvas.height = player.videoHeight;
  const context = /** @type {CanvasRenderingContext2D} */ (canvas.getContext('2d', { alpha: false }));
  const draw = () => context.drawImage(player, 0, 0, canvas.width, canvas.height);
  const onPicture = () => {
    if (signal.aborted) return;
    draw();
    player.requestVideoFrameCallback(onPicture);
  };
  draw();
  player.requestVideoFrameCallback(onPicture);
  return { canvas, draw };
}

/**
 * @param {File} file
 * @param {import('./session.js').Look} look
 * @param {AbortSignal} signal
 * @param {Place} [place]
 * @returns {Promise<import('./session.js').Session>}
 */
export async function openVideo(file, look, signal, place = { time: 0, isPaused: false }) {
  const url = URL.createObjectURL(file);
  signal.addEventListener('abort', () => URL.revokeObjectURL(url));
  const player = await load(url, place, signal);
  if (!('requestVideoFrameCallback' in player)) throw new Error('this browser does not hand out the pictures of a video');

  const { canvas, draw } = copyPictures(player, signal);
  const track = canvas.captureStream().getVideoTracks()[0];
  const stop = () => track.stop();
  signal.addEventListener('abort', stop);
  player.addEventListener('error', stop); // damaged further on
  // A canvas gives pictures when it is drawn: a paused video is drawn until the first one has arrived.
  const drawing = setInterval(draw, 50);
  if (!place.isPaused) player.play().catch(() => {});
  try {
    const live = await beautifyTrack(track, look, signal);
    const setLook = (/** @type {import('./session.js').Look} */ next) => {
      live.setLook(next);
      if (player.paused) draw();
    };
    const again = () => {
      const left = { time: player.currentTime, isPaused: player.paused };
      return (/** @type {import('./session.js').Look} */ nextLook, /** @type {AbortSignal} */ nextSignal) =>
        openVideo(file, nextLook, nextSignal, left);
    };
    const words = `${file.name}, without sound`;
    return { kind: 'file', name: file.name, words, original: canvas, player, again, ...live, setLook };
  } finally {
    clearInterval(drawing);
  }
}

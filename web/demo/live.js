/// A moving picture: a track, and its result in a video element.
import { createBeautyTrack } from '../src/index.js';

/** An element that shows a track. @param {MediaStreamTrack} track */
export function showTrack(track) {
  const video = document.createElement('video');
  video.muted = true;
  video.playsInline = true;
  video.autoplay = true;
  video.srcObject = new MediaStream([track]);
  return video;
}

/**
 * Waits for the first picture.
 *
 * @param {HTMLVideoElement} video
 * @param {AbortSignal} signal
 * @param {Promise<void>} closed  of what it shows
 */
export async function firstFrame(video, signal, closed) {
  if (video.readyState >= HTMLMediaElement.HAVE_CURRENT_DATA) return;
  /** @type {Promise<void>} */
  const shown = new Promise((resolve, reject) => {
    video.addEventListener('loadeddata', () => resolve(), { once: true });
    signal.addEventListener('abort', () => reject(signal.reason), { once: true });
  });
  const ended = closed.then(() => {
    throw new Error('it ended before its first picture');
  });
  await Promise.race([shown, ended]);
}

/**
 * @param {MediaStreamTrack} track
 * @param {import('./session.js').Look} look
 * @param {AbortSignal} signal  ends the work and the result, not the track
 */
export async function beautifyTrack(track, look, signal) {
  const beauty = await createBeautyTrack(track, { look, signal });
  const result = showTrack(beauty.track);
  signal.addEventListener('abort', () => {
    result.srcObject = null;
  });
  await firstFrame(result, signal, beauty.closed);
  return {
    result,
    track: beauty.track,
    closed: beauty.closed,
    stats: () => beauty.stats,
    setLook: (/** @type {import('./session.js').Look} */ next) => {
      beauty.look = next;
    }
  };
}

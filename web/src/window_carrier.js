/// Frames of a track by way of a processor and a generator in the window, whose streams go to the worker.
import { watchEnd } from './watch_end.js';

/**
 * @typedef {import('./worker_link.js').WorkerLink} WorkerLink
 * @typedef {MediaStreamTrack & {stats?: {deliveredFrames: number}}} TrackWithStats  not in every browser
 */

/** Frames that are on their way at most, between the track and the worker's report. */
const UNDER_WAY = 2;

/** Milliseconds that the worker has for the last frames of an input that has ended. */
const LAST_FRAMES = 500;

export function hasWindowCarrier() {
  return typeof MediaStreamTrackProcessor === 'function' && typeof MediaStreamTrackGenerator === 'function';
}

/**
 * @param {WorkerLink} link
 * @param {MediaStreamTrack} input
 */
export function startWindowCarrier(link, input) {
  const arrived = () => /** @type {TrackWithStats} */ (input).stats?.deliveredFrames ?? 0;
  const before = arrived();
  const { readable } = new MediaStreamTrackProcessor({ track: input });
  /** @type {MediaStreamTrackGenerator | undefined} */
  let output;
  try {
    output = new MediaStreamTrackGenerator({ kind: 'video' });
    const { writable } = output;
    link.post({ type: 'streams', readable, writable }, [readable, writable]);
  } catch (error) {
    readable.cancel().catch(() => {});
    output?.stop();
    throw error;
  }
  // While the engine works, the browser itself throws frames away; only the track has counted them.
  let dropped = 0;
  link.onStats = () => {
    const { frames, dropped: atWorker } = link.stats;
    dropped = Math.max(dropped, arrived() - before - frames - atWorker - UNDER_WAY);
  };
  // The stream's own end reaches the worker after the last frame, but is lost while the stream is on its way there.
  const stopWatching = watchEnd(input, () => setTimeout(() => link.end(), LAST_FRAMES));
  const stop = () => {
    stopWatching();
    output.stop();
  };
  return { output, dropped: () => dropped, stop };
}

/// Frames of a track where processors and generators are in workers only: a copy of the track goes there, and a new one
/// comes back.
import { watchEnd } from './watch_end.js';

/** @typedef {import('./worker_link.js').WorkerLink} WorkerLink */

/**
 * @param {WorkerLink} link
 * @param {MediaStreamTrack} input
 * @returns {Promise<import('./beauty_track.js').Carrier | null>} null where the browser cannot after all
 */
export async function startWorkerCarrier(link, input) {
  const copy = input.clone();
  const arrived = new Promise((resolve) => {
    link.onTrack = resolve;
  });
  try {
    link.post({ type: 'track', track: copy }, [/** @type {Transferable} */ (/** @type {unknown} */ (copy))]);
  } catch {
    copy.stop();
    return null;
  }
  const output = await Promise.race([arrived, link.closed]);
  if (output === null) return null;
  if (!output) throw new Error('closed');
  const end = () => link.end();
  const stopWatching = watchEnd(input, end);
  // The copy of a track that is stopped goes on, and not every browser has an event for it.
  link.onStats = () => {
    if (input.readyState === 'ended') end();
  };
  const stop = () => {
    stopWatching();
    output.stop();
  };
  return { output, dropped: () => 0, stop };
}

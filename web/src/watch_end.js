/// Finds that a track has ended.

/**
 * Calls `onEnd`, once or several times, when a track has ended. One that is stopped fires nothing itself. A stream of it
 * alone becomes inactive (Chromium), or the element that plays it ends (Firefox): but not if the track was stopped
 * before the element began to load.
 *
 * @param {MediaStreamTrack} track
 * @param {() => void} onEnd
 * @param {HTMLVideoElement} [video]  plays the track, and has not begun to load
 * @returns {() => void} stops watching
 */
export function watchEnd(track, onEnd, video) {
  /** @type {[EventTarget | undefined, string][]} */
  const sources = [[track, 'ended'], [video, 'ended'], [video, 'loadstart']];
  if (typeof MediaStream === 'function') sources.push([new MediaStream([track]), 'inactive']);
  const look = () => {
    if (track.readyState === 'ended') onEnd();
  };
  for (const [source, type] of sources) source?.addEventListener(type, look);
  return () => {
    for (const [source, type] of sources) source?.removeEventListener(type, look);
  };
}

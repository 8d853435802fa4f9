/// What page and worker say to each other.
///
/// | page | worker |
/// |---|---|
/// | | hello |
/// | start | ready or failed |
/// | look, at any time | |
/// | frame, pixels | answer |
/// | streams, or track | track (for a track), then stats with each frame; ended |
/// | stop | |
///
/// A track of null answers a track that the worker cannot process after all. `failed` may come at any time. The page ends
/// the worker after it, as after `ended`.

/** Goes up with every change here: a page may have got hold of a worker of another version of the package. */
export const PROTOCOL = 1;

/**
 * @typedef {import('./look.js').Settings} Settings
 * @typedef {import('./index.js').Stats} Stats
 *
 * @typedef {{type: 'start', wasmUrl: string | null, lock: string}
 *   | {type: 'look', settings: Settings, table?: Uint8Array | null}
 *   | {type: 'frame', id: number, frame: VideoFrame}
 *   | {type: 'pixels', id: number, data: Uint8ClampedArray<ArrayBuffer>, width: number, height: number}
 *   | {type: 'streams', readable: ReadableStream<VideoFrame>, writable: WritableStream<VideoFrame>}
 *   | {type: 'track', track: MediaStreamTrack}
 *   | {type: 'stop'}} ToWorker  a look without a member `table` keeps the table
 *
 * @typedef {{type: 'hello', protocol: number}
 *   | {type: 'ready', holdsLock: boolean, takesTracks: boolean}
 *   | {type: 'answer', id: number, error: string}
 *   | {type: 'answer', id: number, value: VideoFrame | Uint8ClampedArray<ArrayBuffer>, stats: Stats}
 *   | {type: 'track', track: MediaStreamTrack | null}
 *   | {type: 'stats', stats: Stats}
 *   | {type: 'ended'}
 *   | {type: 'failed', error: string}} ToPage
 */

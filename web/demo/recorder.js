/// Recording of a result.

/** What browsers write, the best first. */
const TYPES = [
  { type: 'video/mp4;codecs=avc1.42E01F', ending: 'mp4' },
  { type: 'video/webm;codecs=vp9', ending: 'webm' },
  { type: 'video/webm', ending: 'webm' },
  { type: 'video/mp4', ending: 'mp4' }
];

const BITS_PER_SECOND = 8e6;

function bestType() {
  if (typeof MediaRecorder === 'undefined') return null;
  return TYPES.find(({ type }) => MediaRecorder.isTypeSupported(type)) ?? null;
}

export function canRecord() {
  return bestType() !== null;
}

/** A recording, finished by `stop` or the end of its track. */
export class Recording {
  #recorder;
  /** @type {Blob[]} */
  #parts = [];
  #begin = performance.now();
  ending;
  /** Resolves with what was recorded; rejects where the browser gives up. @type {Promise<Blob>} */
  finished;

  /** @param {MediaStreamTrack} track */
  constructor(track) {
    const best = bestType();
    if (!best) throw new Error('this browser cannot record');
    const options = { mimeType: best.type, videoBitsPerSecond: BITS_PER_SECOND };
    const recorder = new MediaRecorder(new MediaStream([track]), options);
    this.#recorder = recorder;
    this.ending = best.ending;
    this.finished = new Promise((resolve, reject) => {
      recorder.addEventListener('dataavailable', ({ data }) => this.#parts.push(data));
      recorder.addEventListener('stop', () => resolve(new Blob(this.#parts, { type: recorder.mimeType })));
      recorder.addEventListener('error', () => reject(new Error('the browser has ended the recording')));
    });
    recorder.start(1000);
  }

  get seconds() {
    return Math.floor((performance.now() - this.#begin) / 1000);
  }

  stop() {
    if (this.#recorder.state !== 'inactive') this.#recorder.stop();
  }
}

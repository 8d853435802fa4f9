/// Frames of a track by way of a video element, and results by way of a canvas that is captured. The page only hands
/// frames on; the work is the worker's.
import { PATIENCE } from './patience.js';
import { watchEnd } from './watch_end.js';

/** @typedef {import('./worker_link.js').WorkerLink} WorkerLink */

export function hasCanvasCarrier() {
  return (
    typeof document === 'object' &&
    typeof VideoFrame === 'function' &&
    'requestVideoFrameCallback' in HTMLVideoElement.prototype &&
    'captureStream' in HTMLCanvasElement.prototype
  );
}

/** @param {MediaStreamTrack} track */
function elementOf(track) {
  const video = document.createElement('video');
  video.muted = true;
  video.playsInline = true;
  video.srcObject = new MediaStream([track]);
  return video;
}

/** A canvas as large as the frames that are drawn. */
class CaptureCanvas {
  #canvas = document.createElement('canvas');
  #context;

  /** @param {MediaTrackSettings} size */
  constructor({ width = 640, height = 480 }) {
    this.#resize(width, height);
    this.#context = /** @type {CanvasRenderingContext2D} */ (this.#canvas.getContext('2d', { alpha: false }));
  }

  /** @param {VideoFrame} frame */
  draw(frame) {
    const { displayWidth, displayHeight } = frame;
    if (this.#canvas.width !== displayWidth || this.#canvas.height !== displayHeight) {
      this.#resize(displayWidth, displayHeight);
    }
    this.#context.drawImage(frame, 0, 0);
  }

  capture() {
    return this.#canvas.captureStream().getVideoTracks()[0];
  }

  /**
   * @param {number} width
   * @param {number} height
   */
  #resize(width, height) {
    this.#canvas.width = width;
    this.#canvas.height = height;
  }
}

/**
 * @param {WorkerLink} link
 * @param {MediaStreamTrack} input
 */
export function startCanvasCarrier(link, input) {
  const video = elementOf(input);
  const canvas = new CaptureCanvas(input.getSettings());
  const output = canvas.capture();
  let isBusy = false;
  let isLate = false; // a frame has come meanwhile: the video has it, or a newer one
  let isOver = false;
  let dropped = 0;
  let refused = 0;
  let request = 0;

  const takeFrame = async () => {
    isBusy = true;
    isLate = false;
    try {
      const result = await link.frame(new VideoFrame(video));
      try {
        if (!isOver) canvas.draw(result);
      } finally {
        result.close();
      }
      refused = 0;
    } catch (error) {
      dropped += 1;
      if (++refused >= PATIENCE) link.end(/** @type {Error} */ (error));
    }
    isBusy = false;
    if (isLate && !isOver) takeFrame();
  };
  const onFrame = () => {
    if (isOver) return;
    if (output.readyState === 'ended') return link.end(); // by the page
    request = video.requestVideoFrameCallback(onFrame);
    if (!isBusy) {
      takeFrame();
    } else {
      if (isLate) dropped += 1;
      isLate = true;
    }
  };

  request = video.requestVideoFrameCallback(onFrame);
  const stopWatching = watchEnd(input, () => link.end(), video);
  video.play().catch((error) => {
    if (!isOver) link.end(new Error(`the track cannot be played: ${error.message}`));
  });
  const stop = () => {
    isOver = true;
    video.cancelVideoFrameCallback(request);
    stopWatching();
    video.srcObject = null;
    output.stop();
  };
  return { output, dropped: () => dropped, stop };
}

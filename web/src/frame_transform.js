/// A TransformStream of frames that closes what it is left with. The browser's own forgets frames that were written and
/// not yet begun when it is aborted or cancelled.

export class FrameTransform extends TransformStream {
  /** Frames that were written and not yet begun. */
  #waiting = new Set();
  #isWanted = false; // by who reads
  #isOver = false;
  #wake = () => {};
  /** @type {ReadableStreamDefaultController<VideoFrame> | undefined} */
  #output;
  /** @type {WritableStreamDefaultController | undefined} */
  #input;
  #process;
  #readable;
  #writable;

  /**
   * @param {(frame: VideoFrame) => Promise<VideoFrame>} process  closes what it is given
   * @param {Promise<void>} ended  when nothing can be processed any more; rejects with the reason
   */
  constructor(process, ended) {
    super({ transform: () => Promise.reject(new TypeError('transform: cannot be transferred')) });
    this.#process = process;
    const breakOff = (/** @type {unknown} */ error) => this.#breakOff(error ?? new Error('closed'));
    ended.then(breakOff, breakOff);
    /** @type {ReadableStream<VideoFrame>} */
    this.#readable = new ReadableStream(
      {
        start: (controller) => {
          this.#output = controller;
        },
        pull: () => {
          this.#isWanted = true;
          this.#wake();
        },
        cancel: (reason) => this.#breakOff(reason)
      },
      { highWaterMark: 0 }
    );
    /** @type {WritableStream<VideoFrame>} */
    this.#writable = new WritableStream(
      {
        start: (controller) => {
          this.#input = controller;
          controller.signal.addEventListener('abort', () => this.#breakOutput(controller.signal.reason));
        },
        write: (frame) => this.#write(frame),
        close: () => {
          this.#isOver = true;
          this.#output?.close();
        }
      },
      {
        highWaterMark: 1,
        // Called for each frame that is written, even if its turn never comes.
        size: (frame) => {
          if (this.#isOver) frame?.close?.();
          else this.#waiting.add(frame);
          return 1;
        }
      }
    );
  }

  get readable() {
    return this.#readable;
  }

  get writable() {
    return this.#writable;
  }

  /** @param {VideoFrame} frame */
  async #write(frame) {
    while (!this.#isWanted && !this.#isOver) {
      await new Promise((resolve) => {
        this.#wake = () => resolve(undefined);
      });
    }
    if (this.#isOver) return; // closed, as all that waited
    this.#isWanted = false;
    this.#waiting.delete(frame);
    /** @type {VideoFrame | undefined} */
    let result;
    try {
      result = await this.#process(frame);
      this.#output?.enqueue(result);
    } catch (error) {
      result?.close();
      this.#breakOff(error);
      throw error;
    }
  }

  /** @param {unknown} reason  for both ends */
  #breakOff(reason) {
    this.#breakOutput(reason);
    this.#input?.error(reason);
  }

  /** @param {unknown} reason */
  #breakOutput(reason) {
    this.#isOver = true;
    for (const frame of this.#waiting) frame?.close?.();
    this.#waiting.clear();
    this.#wake();
    this.#output?.error(reason);
  }
}

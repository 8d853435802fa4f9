/** How a picture is changed. All members are optional; what is left out has its default. */
export interface Look {
  /** Whitening in percent, 0 (colours stay) to 100. Default 50. */
  whitening?: number | undefined;
  /** Smoothing of skin, 0 (none) to 1000 (full). Default 1000. */
  softening?: number | undefined;
  /** Its reach in pixels, 0 (neither softening nor evening) to 128. Default 'auto': by the size of the frame. */
  radius?: number | 'auto' | undefined;
  /** What smoothing takes for an edge: contrast relative to the brightness around, or in levels. Default 'relative'. */
  contrast?: 'relative' | 'absolute' | undefined;
  /** What whitening lifts: the whole picture, or skin. Default 'all'. */
  whitenArea?: 'all' | 'skin' | undefined;
  /** Evening of skin colour, such as red spots, 0 (none) to 1000. Default 0. */
  evenTone?: number | undefined;
  /** A colour table, the bytes of an `adjust.vlk`; copied. Default null: none. */
  table?: ArrayBuffer | Uint8Array | null | undefined;
}

/** A look with all its members, frozen. Change it by assigning `{...look, whitening: 30}`. */
export type CompleteLook = Readonly<{ [name in Exclude<keyof Look, 'table'>]-?: NonNullable<Look[name]> }> & {
  readonly table: Uint8Array | null;
};

export interface Options {
  /** Default: every member's default. */
  look?: Look | undefined;
  /** Ends what is made, or the making of it. */
  signal?: AbortSignal | undefined;
  /** Address of the package's `worker.js`, relative to the page, where a bundler does not find it by itself. */
  workerUrl?: string | URL | undefined;
  /** Address of one module, `simd.wasm` or `scalar.wasm`, relative to the page. Default: the faster one that runs. */
  wasmUrl?: string | URL | undefined;
}

export interface Stats {
  /** Frames that were processed. */
  readonly frames: number;
  /** Frames of a track that gave way to newer ones, or could not be read. A Beautifier drops none. */
  readonly dropped: number;
  /** The engine's time for a frame, the mean of the last 30. */
  readonly milliseconds: number;
}

export interface BeautyTrack {
  /** The result. It ends, with an event `ended`, when the input ends or the worker breaks. */
  readonly track: MediaStreamTrack;
  /**
   * The look of the frames from the next one on. Assigning replaces it whole.
   *
   * @throws {RangeError} that names the member, and changes nothing
   */
  get look(): CompleteLook;
  set look(look: Look);
  readonly stats: Stats;
  /** Resolves when the track has been stopped, aborted, or its input has ended; rejects with what has broken it. */
  readonly closed: Promise<void>;
  /** Ends the result, the worker and its memory, and leaves the input live. */
  stop(): void;
}

/**
 * Beautifies a track. The work is done in a worker; frames that come while it is busy are dropped.
 *
 * Rejects where the track, the look, the worker or the module is bad, or the browser has no way to process a track.
 *
 * @param track  a live video track; stays the caller's
 */
export function createBeautyTrack(track: MediaStreamTrack, options?: Options): Promise<BeautyTrack>;

/** Beautifies frames and pictures one by one, in a worker, in the order in which they are given. */
export class Beautifier {
  private constructor();
  static create(options?: Options): Promise<Beautifier>;
  /** As that of a BeautyTrack; counts for what is given from then on. */
  get look(): CompleteLook;
  set look(look: Look);
  readonly stats: Stats;
  /**
   * @param frame  closed, also where it is refused
   * @returns a frame of the same size, timestamp and duration, which the caller closes. 4:2:0 of 8 bits in BT.601 or
   *     BT.709 and pixels keep format, matrix and range; all others become sRGB pixels. Rejects with "closed" after
   *     `close`
   */
  process(frame: VideoFrame): Promise<VideoFrame>;
  /** A stream that does to each frame what `process` does. */
  transform(): TransformStream<VideoFrame, VideoFrame>;
  /** @returns a new picture; `image` stays as it is */
  processPixels(image: ImageData): Promise<ImageData>;
  /** Ends the worker and its memory; what is in work rejects. */
  close(): void;
}

// What browsers have and TypeScript's own declarations lack.

interface MediaStreamTrackProcessorInit {
  track: MediaStreamTrack;
  maxBufferSize?: number;
}

declare class MediaStreamTrackProcessor {
  constructor(init: MediaStreamTrackProcessorInit);
  readonly readable: ReadableStream<VideoFrame>;
}

/** In the window. */
declare class MediaStreamTrackGenerator extends MediaStreamTrack {
  constructor(init: { kind: 'video' });
  readonly writable: WritableStream<VideoFrame>;
}

/** In workers. */
declare class VideoTrackGenerator {
  readonly track: MediaStreamTrack;
  readonly writable: WritableStream<VideoFrame>;
}

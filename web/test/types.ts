// Compiled, not run: the declarations fit what the sources export, and what pages write.
import { Beautifier, createBeautyTrack, type Look, type Stats } from 'vlvk-makeup';
import { Beautifier as BuiltBeautifier } from '../src/beautifier.js';
import { createBeautyTrack as builtCreateBeautyTrack } from '../src/beauty_track.js';

export const asDeclared: typeof createBeautyTrack = builtCreateBeautyTrack;
export const created: (options?: { look?: Look }) => Promise<Omit<Beautifier, never>> = BuiltBeautifier.create;

export async function page(camera: MediaStreamTrack, table: ArrayBuffer, frame: VideoFrame): Promise<Stats> {
  const look: Look = { whitening: 30, radius: 'auto', contrast: 'absolute', whitenArea: 'skin', table };
  const beauty = await createBeautyTrack(camera, { look, signal: new AbortController().signal, wasmUrl: '/simd.wasm' });
  beauty.look = { ...beauty.look, radius: 24, table: new Uint8Array(table) };
  // @ts-expect-error only words that there are
  beauty.look = { whitenArea: 'hair' };
  // @ts-expect-error a look is replaced, not changed
  beauty.look.whitening = 3;
  new MediaStream([beauty.track]);
  beauty.closed.then(beauty.stop);

  const beautifier = await Beautifier.create({ look: {}, workerUrl: new URL('https://page.example/worker.js') });
  const result: VideoFrame = await beautifier.process(frame);
  result.close();
  new ReadableStream<VideoFrame>().pipeThrough(beautifier.transform());
  beautifier.close();
  return beauty.stats;
}

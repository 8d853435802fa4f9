/// A page of a project that installs the package and bundles it.
import { createBeautyTrack, type BeautyTrack, type Options } from 'vlvk-makeup';
import wasmUrl from 'vlvk-makeup/scalar.wasm?url';
import workerUrl from 'vlvk-makeup/worker.js?worker&url';

declare global {
  interface Window {
    /** `isExplicit`: all addresses are given, rather than found by the package itself. */
    start: (isExplicit: boolean) => Promise<BeautyTrack>;
    ready: boolean;
  }
}

window.start = async (isExplicit) => {
  const [input] = (await navigator.mediaDevices.getUserMedia({ video: true })).getVideoTracks();
  const options: Options = isExplicit ? { wasmUrl, workerUrl } : {};
  return createBeautyTrack(input!, { look: { whitening: 30 }, ...options });
};
window.ready = true;

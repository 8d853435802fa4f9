/// The package's worker, with a module that tests can slow down, break and look into: self.instruments.
const instantiate = WebAssembly.instantiate;
self.instruments = { delay: 0, trap: false, refuse: false, memory: null };

// A worker that seems to take tracks, in a browser that does not hand them over.
if (location.search === '?tracks') self.MediaStreamTrackProcessor = self.VideoTrackGenerator = class {};

WebAssembly.instantiate = async (module, imports) => {
  const { exports } = await instantiate(module, imports);
  self.instruments.memory = exports.memory;
  const vlvkMakeupProcess = (...values) => {
    if (self.instruments.trap) throw new WebAssembly.RuntimeError('unreachable');
    if (self.instruments.refuse) return -1;
    for (const end = performance.now() + self.instruments.delay; performance.now() < end; );
    return exports.vlvkMakeupProcess(...values);
  };
  return { exports: { ...exports, vlvkMakeupProcess } };
};

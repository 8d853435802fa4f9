/// What the package offers to pages.
export { Beautifier } from './beautifier.js';
export { createBeautyTrack } from './beauty_track.js';

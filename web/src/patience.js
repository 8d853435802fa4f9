/** Frames in a row that may be refused before a track counts as broken: a second, while a browser loses its GPU say. */
export const PATIENCE = 30;

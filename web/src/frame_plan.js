/// How a VideoFrame is taken to the engine and back: formats, colour spaces, planes.

/** @typedef {import('./layouts.js').EngineFrame} EngineFrame */

/** Numbers of VlvkFormat. I420A's alpha lies after the planes that the engine sees, and stays as it is. */
const FORMATS = /** @type {const} */ ({ NV12: 1, I420: 3, I420A: 3, RGBA: 16, BGRA: 17, RGBX: 18, BGRX: 19 });

/** @typedef {keyof typeof FORMATS} Format */

/** Numbers of ITU-T H.273, as VlvkMatrix. */
const BT709 = 1;
const BT601 = 6;
/** @type {Record<string, number>} */
const MATRICES = { bt709: BT709, bt470bg: BT601, smpte170m: BT601 };

const SRGB = Object.freeze({ primaries: 'bt709', transfer: 'iec61966-2-1', matrix: 'rgb', fullRange: true });

/**
 * @typedef {object} FramePlan
 * @property {Format} format
 * @property {boolean} converted  to pixels, because the engine does not take the frame's own format
 * @property {number} bytes  room for the samples
 * @property {EngineFrame} engine
 * @property {number} codedWidth  even where chroma has half the resolution
 * @property {number} codedHeight
 */

/**
 * Planes of a frame without gaps.
 *
 * @param {Format} format
 * @param {number} width  of the samples, even for 4:2:0
 * @param {number} height
 */
function planesOf(format, width, height) {
  const luma = width * height;
  switch (format) {
    case 'NV12':
      return { bytes: luma * 1.5, planes: [{ offset: 0, stride: width }, { offset: luma, stride: width }] };
    case 'I420':
    case 'I420A': {
      const stride = width / 2;
      const planes = [
        { offset: 0, stride: width },
        { offset: luma, stride },
        { offset: luma * 1.25, stride }
      ];
      if (format === 'I420') return { bytes: luma * 1.5, planes };
      return { bytes: luma * 2.5, planes: [...planes, { offset: luma * 1.5, stride: width }] };
    }
    default:
      return { bytes: luma * 4, planes: [{ offset: 0, stride: width * 4 }] };
  }
}

/**
 * The engine's format for a frame, or pixels made by the browser: of 4:2:2 and 4:4:4, of more than 8 bits, of a matrix
 * other than BT.601 and BT.709, and of frames that do not say what they are.
 *
 * @param {string | null} format
 * @param {string | null | undefined} matrix
 * @returns {{format: Format, converted: boolean}}
 */
function formatFor(format, matrix) {
  if (format !== null && format in FORMATS) {
    const isPixels = format.length === 4 && /^(RGB|BGR)/.test(format);
    const isKnown = isPixels || matrix === null || matrix === undefined || matrix in MATRICES;
    if (isKnown) return { format: /** @type {Format} */ (format), converted: false };
  }
  return { format: format?.startsWith('I4') && format.includes('A') ? 'RGBA' : 'RGBX', converted: true };
}

/**
 * @param {VideoFrame} frame  open
 * @returns {FramePlan}
 */
export function planFrame(frame) {
  const matrix = frame.colorSpace?.matrix;
  const { format, converted } = formatFor(frame.format, matrix);
  const { width, height } = frame.visibleRect ?? { width: frame.codedWidth, height: frame.codedHeight };
  const step = FORMATS[format] < FORMATS.RGBA ? 2 : 1;
  const codedWidth = Math.ceil(width / step) * step;
  const codedHeight = Math.ceil(height / step) * step;
  const { bytes, planes } = planesOf(format, codedWidth, codedHeight);
  const engine = {
    format: FORMATS[format],
    // A camera's frame mostly does not say; then it is what webcams deliver.
    matrix: MATRICES[matrix ?? 'smpte170m'] ?? BT601,
    range: frame.colorSpace?.fullRange ? 1 : 0,
    width,
    height,
    planes
  };
  return { format, converted, bytes, engine, codedWidth, codedHeight };
}

/**
 * What `copyTo` wants. A format is named only where it is not the frame's own: browsers refuse their own by name.
 *
 * @param {FramePlan} plan
 * @returns {VideoFrameCopyToOptions}
 */
export function copyOptions({ format, converted, engine }) {
  return converted
    ? { layout: engine.planes, format: /** @type {VideoPixelFormat} */ (format), colorSpace: 'srgb' }
    : { layout: engine.planes };
}

/**
 * What makes the result like its input.
 *
 * @param {FramePlan} plan
 * @param {VideoFrame} frame  open
 */
function resultOptions(plan, frame) {
  const { width, height, planes } = plan.engine;
  // `rotation` and `flip` are not in every browser.
  const { rotation = 0, flip } = /** @type {{rotation?: number, flip?: boolean}} */ (/** @type {unknown} */ (frame));
  // Browsers differ in whether a size for display is that before rotation, so it is left to them where it can be.
  const [shownWidth, shownHeight] = rotation % 180 === 0 ? [width, height] : [height, width];
  const isSquare = frame.displayWidth === shownWidth && frame.displayHeight === shownHeight;
  const options = {
    ...(isSquare ? {} : { displayWidth: frame.displayWidth, displayHeight: frame.displayHeight }),
    format: plan.format,
    codedWidth: plan.codedWidth,
    codedHeight: plan.codedHeight,
    visibleRect: { x: 0, y: 0, width, height },
    layout: planes,
    timestamp: frame.timestamp,
    duration: frame.duration ?? undefined,
    colorSpace: plan.converted ? SRGB : frame.colorSpace?.toJSON(),
    rotation,
    flip
  };
  return /** @type {VideoFrameBufferInit} */ (options);
}

/**
 * @param {Uint8Array<ArrayBuffer>} bytes  copied
 * @param {FramePlan} plan
 * @param {VideoFrame} frame  open
 */
export function resultFrame(bytes, plan, frame) {
  const options = resultOptions(plan, frame);
  const result = new VideoFrame(bytes, options);
  // A browser whose size for display is that before rotation has turned it.
  if (result.displayWidth === frame.displayWidth) return result;
  result.close();
  const { displayWidth, displayHeight } = frame;
  return new VideoFrame(bytes, { ...options, displayWidth: displayHeight, displayHeight: displayWidth });
}

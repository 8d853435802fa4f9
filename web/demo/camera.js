/// The cameras of the device.
import { beautifyTrack, showTrack } from './live.js';

/** What is asked for; a camera that has less gives what it has. */
const WISHES = { width: { ideal: 1280 }, height: { ideal: 720 }, frameRate: { ideal: 30 } };

/** @type {Record<string, string>} */
const REFUSALS = {
  NotAllowedError: 'the camera was refused. Allow it for this page in the browser, or open a photo or a video instead',
  SecurityError: 'this page may not use the camera. Open a photo or a video instead',
  NotFoundError: 'no camera was found. Open a photo or a video instead',
  OverconstrainedError: 'that camera is not there any more. Choose another one',
  NotReadableError: 'the camera cannot be started. Another program may be using it',
  AbortError: 'the camera cannot be started. Another program may be using it'
};

/** @param {string | undefined} device */
async function startCamera(device) {
  if (!navigator.mediaDevices) {
    throw new Error('the browser gives cameras only to pages with https, and to this computer itself (localhost)');
  }
  const video = device ? { ...WISHES, deviceId: { exact: device } } : { ...WISHES, facingMode: 'user' };
  try {
    const stream = await navigator.mediaDevices.getUserMedia({ video, audio: false });
    return stream.getVideoTracks()[0];
  } catch (error) {
    const { name, message } = /** @type {DOMException} */ (error);
    throw new Error(REFUSALS[name] ?? `the camera cannot be started: ${message}`);
  }
}

/** The cameras, once one has been allowed; before that browsers tell neither names nor numbers. */
export async function listCameras() {
  const devices = (await navigator.mediaDevices?.enumerateDevices()) ?? [];
  const cameras = devices.filter(({ kind, deviceId }) => kind === 'videoinput' && deviceId !== '');
  return cameras.map(({ deviceId, label }, index) => ({ deviceId, label: label || `Camera ${index + 1}` }));
}

/**
 * @param {string | undefined} device  undefined: the browser's choice
 * @param {import('./session.js').Look} look
 * @param {AbortSignal} signal
 * @returns {Promise<import('./session.js').Session>}
 */
export async function openCamera(device, look, signal) {
  const camera = await startCamera(device);
  const original = showTrack(camera);
  const stop = () => {
    camera.stop();
    original.srcObject = null;
  };
  signal.addEventListener('abort', stop);
  if (signal.aborted) stop();
  signal.throwIfAborted();

  const { deviceId, facingMode } = camera.getSettings();
  return {
    kind: 'camera',
    name: 'camera',
    words: camera.label || 'Camera',
    original,
    device: deviceId,
    isFront: facingMode !== 'environment',
    again: () => (nextLook, nextSignal) => openCamera(deviceId, nextLook, nextSignal),
    ...(await beautifyTrack(camera, look, signal))
  };
}

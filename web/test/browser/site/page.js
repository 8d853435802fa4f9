/// What tests call in their page.
import { Beautifier, createBeautyTrack } from '/exports/index.js';

const CAMERA = { width: 1280, height: 720, frameRate: 30 };

/** A fresh track of the camera. */
async function camera(video = CAMERA) {
  return (await navigator.mediaDevices.getUserMedia({ video })).getVideoTracks()[0];
}

/** The samples of a frame as the program writes them: planes without gaps. */
async function bytesOf(frame) {
  const bytes = new Uint8Array(frame.allocationSize());
  await frame.copyTo(bytes);
  return bytes;
}

async function hashOf(bytes) {
  const digest = new Uint8Array(await crypto.subtle.digest('SHA-256', bytes));
  return Array.from(digest, (byte) => byte.toString(16).padStart(2, '0')).join('');
}

/**
 * Reads a track until `visit` has returned something other than undefined, or until its end, for which null stands.
 *
 * @param {(frame: VideoFrame, index: number) => unknown} visit  the frame is closed after it
 */
async function watch(track, visit) {
  const reader = new MediaStreamTrackProcessor({ track, maxBufferSize: 2 }).readable.getReader();
  try {
    for (let index = 0; ; ++index) {
      const { done, value } = await reader.read();
      if (done) return null;
      try {
        const result = await visit(value, index);
        if (result !== undefined) return result;
      } finally {
        value.close();
      }
    }
  } finally {
    reader.cancel();
  }
}

/** Whether `count` more frames come. */
function framesCome(track, count = 3) {
  return watch(track, (frame, index) => (index + 1 >= count ? true : undefined));
}

/** What is said where `task` fails; undefined where it does not. */
async function wordsOf(task) {
  try {
    await task();
  } catch (error) {
    return `${error.name}: ${error.message}`;
  }
}

/** A picture that differs with `seed`, in which there is skin. */
function paint(width, height, seed = 0) {
  const canvas = new OffscreenCanvas(width, height);
  const context = canvas.getContext('2d', { willReadFrequently: true });
  context.fillStyle = `rgb(${200 + (seed % 40)} 150 130)`;
  context.fillRect(0, 0, width, height);
  context.fillStyle = 'rgb(120 75 55)';
  for (let i = 0; i < 40; ++i) context.fillRect((i * 37 + seed) % width, (i * 53) % height, 3, 2);
  return canvas;
}

/** The samples of the first frame of camera.y4m: I420, 1280 x 720. */
async function firstOfClip() {
  const clip = new Uint8Array(await (await fetch('/clips/camera.y4m')).arrayBuffer());
  return clip.subarray(clip.indexOf(10, clip.indexOf(10) + 1) + 1);
}

/** A track whose frames a test writes. */
function source() {
  const track = new MediaStreamTrackGenerator({ kind: 'video' });
  const writer = track.writable.getWriter();
  const write = (width, height, seed = 0, timestamp = seed * 33333) =>
    writer.write(new VideoFrame(paint(width, height, seed), { timestamp }));
  return { track, writer, write };
}

/** A function that gives what a track shows now. */
async function show(track) {
  const video = document.createElement('video');
  video.muted = true;
  video.srcObject = new MediaStream([track]);
  await video.play();
  return () => {
    const context = new OffscreenCanvas(video.videoWidth, video.videoHeight).getContext('2d');
    context.drawImage(video, 0, 0);
    return context.getImageData(0, 0, video.videoWidth, video.videoHeight);
  };
}

const pause = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** Lets the browser find frames that were lost. */
async function collect() {
  for (let i = 0; i < 3; ++i) {
    gc();
    await pause(50);
  }
}

Object.assign(window, {
  Beautifier, createBeautyTrack, camera, bytesOf, hashOf, firstOfClip, watch, framesCome, wordsOf, paint, show, source,
  pause, collect, ready: true
});

/// The page: one session at a time, and everything that shows it.
import { listCameras } from './camera.js';
import { Controls } from './controls.js';
import { takeDrops } from './drop.js';
import { Meter } from './meter.js';
import { find, say, wordsOf } from './page.js';
import { Player } from './player.js';
import { RecordingButton } from './recording_button.js';
import { pictureOf, resultName, saveFile } from './save.js';
import { cameraSource, fileSource, sampleSource } from './source.js';
import { Stage } from './stage.js';

/**
 * @typedef {import('./session.js').Session} Session
 * @typedef {import('./session.js').Opening} Opening
 */

const message = find('#message', HTMLElement);
const status = find('#status', HTMLElement);
const savePicture = find('#save-picture', HTMLButtonElement);
const cameraList = find('#camera', HTMLSelectElement);
const mirror = find('#mirror', HTMLInputElement);
const fileChoice = find('#file', HTMLInputElement);
const sources = {
  camera: find('#use-camera', HTMLButtonElement),
  file: find('#choose-file', HTMLButtonElement),
  sample: find('#use-sample', HTMLButtonElement)
};

const complain = (/** @type {unknown} */ error) => say(message, `${wordsOf(error)}.`.replace(/\.\.$/, '.'));

const stage = new Stage();
const meter = new Meter();
const player = new Player();
const recordingButton = new RecordingButton(complain);
const controls = new Controls((look) => session?.setLook(look));

/** @type {Session | null} */
let session = null;
/** Ends the session. @type {AbortController | null} */
let running = null;
/** Ends the session that is being opened. @type {AbortController | null} */
let opening = null;
/** What is taken up when the page is seen again. @type {Opening | null} */
let interrupted = null;

function close() {
  running?.abort();
  show(null, null);
}

/**
 * @param {Session | null} next
 * @param {AbortController | null} controller
 */
function show(next, controller) {
  session = next;
  running = controller;
  if (next) stage.show(next);
  else stage.clear();
  meter.session = next;
  recordingButton.session = next;
  controls.canTry = next !== null;
  player.video = next?.player ?? null;
  savePicture.disabled = !next;
  status.textContent = next?.words ?? '';
  for (const [kind, button] of Object.entries(sources)) button.setAttribute('aria-pressed', String(kind === next?.kind));
  showMirror();
  showCameras();
}

/**
 * Opens something in place of what is shown, which stays until then, but for a camera: many devices open one only.
 *
 * @param {Opening} open
 */
async function replace(open, isCamera = false) {
  opening?.abort();
  interrupted = null;
  const controller = new AbortController();
  opening = controller;
  say(message, '');
  stage.busy = true;
  if (isCamera && session?.kind === 'camera') close();
  try {
    const next = await open(controls.look, controller.signal);
    controller.signal.throwIfAborted();
    running?.abort();
    show(next, controller);
    next.setLook(controls.look); // it may have changed meanwhile
    next.original.addEventListener('resize', () => stage.fit(next.original));
    awaitEnd(next);
  } catch (error) {
    const isUnwanted = controller.signal.aborted;
    controller.abort();
    if (!isUnwanted) complain(error);
  } finally {
    if (opening === controller) {
      opening = null;
      stage.busy = false;
    }
  }
}

/** @param {Session} watched */
async function awaitEnd(watched) {
  let words =
    watched.kind === 'camera'
      ? 'The camera has ended: it was unplugged, or taken away from this page'
      : 'The video has ended: this browser cannot play what follows';
  try {
    await watched.closed;
  } catch (error) {
    words = wordsOf(error);
  }
  if (session !== watched) return;
  close();
  complain(words);
}

async function showCameras() {
  const cameras = session?.kind === 'camera' ? await listCameras() : [];
  find('#camera-choice', HTMLElement).hidden = cameras.length < 2;
  cameraList.replaceChildren(
    ...cameras.map(({ deviceId, label }) => new Option(label, deviceId, false, deviceId === session?.device))
  );
}

function showMirror() {
  const canMirror = session?.kind === 'camera' && session.isFront === true;
  find('#mirror-choice', HTMLElement).hidden = !canMirror;
  stage.mirrored = canMirror && mirror.checked;
}

/** @param {File[]} files */
async function takeFiles(files) {
  const isTable = (/** @type {File} */ { name }) => /\.vlk$/i.test(name);
  const table = files.find(isTable);
  const picture = files.find((file) => !isTable(file));
  say(message, '');
  if (picture && /\.cube$/i.test(picture.name)) {
    complain(new Error(`${picture.name}: make a colour table of it with vlvk-makeup table convert, and drop that`));
  } else if (picture) {
    await replace(fileSource(picture));
  }
  if (table) controls.readTable(table);
}

/** A page that is not seen keeps no camera and no worker busy; a photo costs nothing. */
function onVisibility() {
  if (document.hidden) {
    if (!session?.again) return;
    const again = session.again();
    close();
    interrupted = again;
  } else if (interrupted) {
    replace(interrupted, true);
  }
}

sources.camera.addEventListener('click', () => replace(cameraSource(), true));
sources.sample.addEventListener('click', () => replace(sampleSource));
sources.file.addEventListener('click', () => fileChoice.click());
fileChoice.addEventListener('change', () => {
  takeFiles([...(fileChoice.files ?? [])]);
  fileChoice.value = ''; // so that the same file can be chosen again
});
cameraList.addEventListener('change', () => replace(cameraSource(cameraList.value), true));
navigator.mediaDevices?.addEventListener('devicechange', showCameras);
mirror.addEventListener('change', showMirror);
savePicture.addEventListener('click', async () => {
  if (!session) return;
  const name = resultName(session.name, 'png');
  try {
    saveFile(await pictureOf(session.result), name);
  } catch (error) {
    complain(error);
  }
});
takeDrops(takeFiles);
document.addEventListener('visibilitychange', onVisibility);
addEventListener('pagehide', () => {
  opening?.abort();
  close();
});

replace(sampleSource);

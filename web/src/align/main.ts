// Draws discs at known world points, so that a test can measure in the composed picture where they land.

import { KestrinClient, type CameraPose, type Vector3 } from '../client/index.js';
import { Discs } from './discs.js';
import { checkPoints, misplace, project, type BufferPoint, type Fault } from './project.js';

declare global {
  interface Window {
    /** World points, `[[x, y, z], …]` in metres. Setting it redraws. */
    alignPoints: unknown;
    /** False takes all discs away. Setting it redraws. */
    alignVisible: boolean;
    /** Setting it redraws. */
    alignFault: Fault;
  }
}

/** CSS pixels. */
const discRadius = 13 / 2;

const client = new KestrinClient();
const canvas = document.querySelector('canvas')!;
const discs = new Discs(canvas);
const poses: CameraPose[] = []; // the newest first
let points: Vector3[] = [];
let visible = true;
let fault: Fault = {};
let frame = 0;

/**
 * Draws within the call that brought the news, and only then tells of it: when the message arrives, the drawing is done,
 * also in a window that is not shown. Whoever steps from frame to frame waits for it, so frames cannot queue up.
 */
function redraw(): void {
  const rendered = drawDiscs();
  if (rendered === undefined) return;
  client.commands.webUpdate({ frame: ++frame, timestamp: client.pose!.timestamp, rendered });
  client.submit();
}

/** @returns the number of discs; undefined when nothing could be drawn, as before there is a camera */
function drawDiscs(): number | undefined {
  const pose = poses[Math.min(fault.slip ?? 0, poses.length - 1)];
  const { projection } = client;
  if (!pose || !projection) return undefined;
  const ratio = canvas.width / innerWidth;
  const centres = points
    .map((point) => project(point, pose, projection, canvas))
    .filter((centre): centre is BufferPoint => visible && centre !== undefined)
    .map((centre) => misplace(centre, fault, canvas.width, ratio));
  return discs.draw(centres, discRadius * ratio) ? centres.length : undefined;
}

function fitWindow(): void {
  canvas.width = Math.round(innerWidth * devicePixelRatio);
  canvas.height = Math.round(innerHeight * devicePixelRatio);
  redraw(); // resizing empties the canvas
}

function settable<T>(name: string, get: () => T, set: (value: T) => void): void {
  const setAndRedraw = (value: T) => {
    set(value);
    redraw();
  };
  Object.defineProperty(window, name, { get, set: setAndRedraw });
}

settable(
  'alignPoints',
  () => points as unknown,
  (value) => (points = checkPoints(value)),
);
settable(
  'alignVisible',
  () => visible,
  (value) => (visible = value),
);
settable(
  'alignFault',
  () => fault,
  (value) => (fault = value),
);

client.on('pose', (pose) => {
  poses.unshift(pose);
  poses.length = Math.min(poses.length, 64);
  redraw();
});
client.on('projection', redraw);
client.on('viewport', redraw);
canvas.addEventListener('webglcontextlost', (event) => event.preventDefault());
canvas.addEventListener('webglcontextrestored', () => {
  discs.prepare();
  redraw();
});
addEventListener('resize', fitWindow);

try {
  const query = new URLSearchParams(location.search);
  points = checkPoints(JSON.parse(query.get('points') ?? '[]'));
  fault = JSON.parse(query.get('fault') ?? '{}') as Fault;
} catch (error) {
  console.error('The points or the fault in the address cannot be read:', error);
}
fitWindow();
client.start();

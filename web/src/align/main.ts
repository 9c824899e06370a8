// Draws discs at known world points, so that a test can measure in the composed picture where they land, and lines
// between others, so that a person can see it.

import { KestrinClient, type CameraPose, type Vector3 } from '../client/index.js';
import { checkEdges, checkPoints, misplace, project, type BufferPoint, type Edge, type Fault } from './project.js';
import { Strokes, type Stroke } from './strokes.js';

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
const lineRadius = 1;
const discColour = [1, 0, 1] as const;
const lineColour = [0, 1, 0] as const;

const client = new KestrinClient();
const canvas = document.querySelector('canvas')!;
const strokes = new Strokes(canvas);
const poses: CameraPose[] = []; // the newest first
let points: Vector3[] = [];
let edges: Edge[] = [];
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
  const seen = (point: Vector3): BufferPoint | undefined => {
    const at = visible ? project(point, pose, projection, canvas) : undefined;
    return at && misplace(at, fault, canvas.width, ratio);
  };
  const stroke = (from: Vector3, to: Vector3, radius: number, colour: Stroke['colour']): Stroke[] => {
    const [a, b] = [seen(from), seen(to)];
    return a && b ? [{ from: a, to: b, radius: radius * ratio, colour }] : [];
  };
  const lines = edges.flatMap(([from, to]) => stroke(from, to, lineRadius, lineColour));
  const discs = points.flatMap((point) => stroke(point, point, discRadius, discColour));
  return strokes.draw([...lines, ...discs]) ? discs.length : undefined;
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
  strokes.prepare();
  redraw();
});
addEventListener('resize', fitWindow);

try {
  const query = new URLSearchParams(location.search);
  points = checkPoints(JSON.parse(query.get('points') ?? '[]'));
  edges = checkEdges(JSON.parse(query.get('edges') ?? '[]'));
  fault = JSON.parse(query.get('fault') ?? '{}') as Fault;
} catch (error) {
  console.error('The points, the edges or the fault in the address cannot be read:', error);
}
fitWindow();
client.start();

// Draws discs at known world points, so that a test can measure in the composed picture where they land.

import { KestrinClient, type CameraPose, type Vector3 } from '../client/index.js';
import { discsOn } from './discs.js';
import { misplace, project, type Fault } from './project.js';

const discRadius = 13 / 2; // CSS pixels

const query = new URLSearchParams(location.search);
const points = JSON.parse(query.get('points') ?? '[]') as Vector3[];
const fault = JSON.parse(query.get('fault') ?? '{}') as Fault;
const client = new KestrinClient();
const canvas = document.querySelector('canvas')!;
const drawDiscs = discsOn(canvas);
const poses: CameraPose[] = []; // the newest first

/**
 * Draws within the call that brought the news, and only then tells of it: when the message arrives, the drawing is done,
 * also in a window that is not shown. Whoever steps from frame to frame waits for it, so frames cannot queue up.
 */
function redraw(): void {
  const pose = poses[Math.min(fault.slip ?? 0, poses.length - 1)];
  const { projection } = client;
  if (!pose || !projection) return;
  const ratio = canvas.width / innerWidth;
  const centres = points.flatMap((point) => {
    const at = project(point, pose, projection, canvas);
    return at ? [misplace(at, fault, canvas.width, ratio)] : [];
  });
  drawDiscs(centres, discRadius * ratio);
  client.commands.webUpdate({ timestamp: client.pose!.timestamp });
  client.submit();
}

function fitWindow(): void {
  canvas.width = Math.round(innerWidth * devicePixelRatio);
  canvas.height = Math.round(innerHeight * devicePixelRatio);
  redraw(); // resizing empties the canvas
}

client.on('pose', (pose) => {
  poses.unshift(pose);
  poses.length = Math.min(poses.length, 64);
  redraw();
});
client.on('projection', redraw);
client.on('viewport', redraw);
addEventListener('resize', fitWindow);
fitWindow();
client.start();

import { KestrinClient, type CameraPose } from '../client/index.js';
import { Placement } from './placement.js';
import { Stage } from './stage.js';
import { Status } from './status.js';

/** What the page tells its host after each frame, so that a host can see it is alive. */
interface Counters {
  poses: number;
  rendered: number;
  /** Milliseconds since the page was opened. */
  firstPose?: number;
}

const client = new KestrinClient();
const canvas = document.querySelector('canvas')!;
const stage = new Stage(canvas);
const status = new Status(document.querySelector('#status')!);
const counters: Counters = { poses: 0, rendered: 0 };
let placement = new Placement();
let frameAsked = false;
let drawnPose: CameraPose | undefined;

function draw(): boolean {
  return client.pose !== undefined && client.projection !== undefined && stage.render(client.pose, client.projection);
}

/**
 * Draws the newest pose in the next animation frame. That frame is shown right after it is drawn; one drawn at once,
 * when the pose comes, is shown no sooner, and on a slow machine the poses would queue up behind the drawing of frames
 * that nobody sees: seconds late instead of a frame.
 */
function askForFrame(): void {
  if (frameAsked) return;
  frameAsked = true;
  requestAnimationFrame(() => {
    frameAsked = false;
    const isNew = client.pose !== drawnPose;
    if (!draw() || !isNew) return;
    drawnPose = client.pose;
    counters.rendered++;
    status.countFrame();
    client.submit();
    client.commands.webUpdate({ ...counters });
  });
}

function fitWindow(): void {
  stage.resize(innerWidth, innerHeight, devicePixelRatio);
  draw(); // resizing empties the canvas
}

client.on('pose', (pose) => {
  counters.poses++;
  counters.firstPose ??= performance.now();
  const plane = placement.next(client.planes, pose.seconds);
  if (plane) stage.standCubeOn(plane);
  askForFrame();
});
client.on('projection', askForFrame); // the first pose may have come before it
client.on('tracking', (state) => (status.tracking = state));
client.on('planeAdded', (plane) => stage.putPlane(plane));
client.on('planeUpdated', (plane) => stage.putPlane(plane));
client.on('planeRemoved', (plane) => stage.removePlane(plane.id));
client.on('planesCleared', () => {
  stage.clear();
  placement = new Placement();
});
addEventListener('resize', fitWindow);
canvas.addEventListener('webglcontextrestored', askForFrame);

fitWindow();
client.start();

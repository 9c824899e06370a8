export type { Plane, PlaneGeometry, Trigger } from './anchors.js';
export { KestrinClient, type NativePage } from './client.js';
export type { Commands } from './commands.js';
export { planeOutline } from './outline.js';
export { CameraPose, Pose, type Matrix4, type Quaternion, type Vector3 } from './pose.js';
export { Projection } from './projection.js';
export type * from './records.js';
export type * from './web-events.js';
export type { ClientEvents } from './world.js';

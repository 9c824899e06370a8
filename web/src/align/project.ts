import type { Matrix4, Pose, Projection, Vector3 } from '../client/index.js';

/** Faults to put in on purpose, so that a test can show that it would notice them. */
export interface Fault {
  /** CSS pixels to the right. */
  shiftX?: number;
  /** CSS pixels downwards. */
  shiftY?: number;
  /** Left and right exchanged. */
  mirror?: boolean;
  /** Draws with the pose of that many frames ago. */
  slip?: number;
}

/** A position in the drawing buffer: pixels from its bottom left corner, pixel centres at .5, as the fragment shader counts. */
export type BufferPoint = readonly [x: number, y: number];

/** Where a world point appears; undefined when it is behind the camera. */
export function project(
  point: Vector3,
  pose: Pose,
  projection: Projection,
  size: { width: number; height: number },
): BufferPoint | undefined {
  const eye = transform(pose.inverse, [...point, 1]);
  if (eye[2]! >= 0) return undefined;
  const clip = transform(projection.native, eye); // x, y and w are all that is needed: depth plays no part
  return [((clip[0]! / clip[3]! + 1) / 2) * size.width, ((clip[1]! / clip[3]! + 1) / 2) * size.height];
}

/** @param ratio buffer pixels a CSS pixel */
export function misplace([x, y]: BufferPoint, fault: Fault, width: number, ratio: number): BufferPoint {
  const mirrored = fault.mirror ? width - x : x;
  return [mirrored + (fault.shiftX ?? 0) * ratio, y - (fault.shiftY ?? 0) * ratio];
}

function transform(m: Readonly<Matrix4>, v: readonly number[]): number[] {
  return [0, 1, 2, 3].map((row) => m[row]! * v[0]! + m[row + 4]! * v[1]! + m[row + 8]! * v[2]! + m[row + 12]! * v[3]!);
}

// The binary payloads of the native calls. Each arrives as the "binary string" that atob() gives: one character a byte.
// All fields are 32 bits, little-endian, without header, count or padding: the length is the only framing.

import { CameraPose, Pose, type Matrix4, type Quaternion, type Vector3 } from './pose.js';

/** A payload that is not what the call promises. The call is then ignored. */
export class PayloadError extends Error {}

/** 4 bytes. */
export function decodeFloat(payload: string): number {
  return floats(payload, 1)[0]!;
}

/** 64 bytes: sixteen floats, column-major. */
export function decodeMatrix(payload: string): Matrix4 {
  return floats(payload, 16);
}

/** 28 bytes: position x y z, quaternion x y z w. */
export function decodePose(payload: string): Pose {
  return new Pose(...positionAndOrientation(floats(payload, 7)));
}

/** 32 bytes: a pose, then the timestamp. */
export function decodeCameraPose(payload: string): CameraPose {
  const values = floats(payload, 8);
  return new CameraPose(...positionAndOrientation(values), values[7]!);
}

/** 12 bytes a vector: x y z. */
export function decodeVectors(payload: string): Vector3[] {
  const values = floats(payload, wholeCount(payload, 12) * 3);
  return Array.from(
    { length: values.length / 3 },
    (_, i): Vector3 => [values[3 * i]!, values[3 * i + 1]!, values[3 * i + 2]!],
  );
}

/** 4 bytes an index, signed. */
export function decodeIndices(payload: string): number[] {
  const view = bytes(payload, wholeCount(payload, 4) * 4);
  return Array.from({ length: view.byteLength / 4 }, (_, i) => view.getInt32(4 * i, true));
}

/** UTF-8 JSON. */
export function decodeJson(payload: string): unknown {
  const view = bytes(payload, payload.length);
  try {
    return JSON.parse(new TextDecoder('utf-8', { fatal: true }).decode(view));
  } catch (error) {
    throw new PayloadError(`not UTF-8 JSON (${String(error)})`);
  }
}

function positionAndOrientation([px, py, pz, x, y, z, w]: number[]): [Vector3, Quaternion] {
  // The sender does not normalise, and a rotation that is off by its rounding would shear what is drawn with it.
  const length = Math.hypot(x!, y!, z!, w!);
  if (length === 0) throw new PayloadError('a quaternion of length zero');
  return [
    [px!, py!, pz!],
    [x! / length, y! / length, z! / length, w! / length],
  ];
}

function wholeCount(payload: string, size: number): number {
  const count = payload.length / size;
  if (!Number.isInteger(count)) throw new PayloadError(`${payload.length} bytes, not a multiple of ${size}`);
  return count;
}

function floats(payload: string, count: number): number[] {
  const view = bytes(payload, count * 4);
  const values = Array.from({ length: count }, (_, i) => view.getFloat32(4 * i, true));
  if (!values.every(Number.isFinite)) throw new PayloadError('a number that is not finite');
  return values;
}

function bytes(payload: string, length: number): DataView {
  if (typeof payload !== 'string') throw new PayloadError('no payload');
  if (payload.length !== length) throw new PayloadError(`${payload.length} bytes instead of ${length}`);
  const view = new DataView(new ArrayBuffer(length));
  for (let i = 0; i < length; i++) {
    const byte = payload.charCodeAt(i);
    if (byte > 255) throw new PayloadError('a character that is no byte');
    view.setUint8(i, byte);
  }
  return view;
}

import { guarded, type Calls } from './guard.js';
import {
  decodeCameraPose,
  decodeFloat,
  decodeIndices,
  decodeJson,
  decodeMatrix,
  decodePose,
  decodeVectors,
  PayloadError,
} from './decode.js';
import type { PlaneGeometry } from './anchors.js';
import { Projection } from './projection.js';
import { trackingStates, type AppDetail, type TrackingState } from './records.js';
import type { World } from './world.js';

/** The object that native code calls as `window.__KRJ_Native_IN`. None of its calls throws. */
export type NativeIn = ReturnType<typeof nativeIn>;

export function nativeIn(world: World) {
  const { events } = world;
  const calls = {
    onPose: (pose: string) => world.set('pose', decodeCameraPose(pose)),
    onProj: (matrix: string) => world.set('projection', perspective(matrix)),
    onViewportUpdate: (width: number, height: number) =>
      world.set('viewport', { width: extent(width), height: extent(height) }),
    onLightEstimate: (light: string) => world.set('light', decodeFloat(light)),
    onTrackingReasonChange: (word: string) => world.set('tracking', trackingState(word)),

    onTriggerStart: () => events.emit('triggersStarted', undefined),
    onTriggerUpdate: (id: string, pose: string, width: number, height: number) =>
      world.putTrigger(name(id), decodePose(pose), extent(width), extent(height)),
    onTriggerRemove: (id: string) => world.removeTrigger(id),
    onTriggerClear: () => world.clearTriggers(),

    onPlaneStart: () => events.emit('planesStarted', undefined),
    onPlaneUpdate: (id: string, pose: string, width: number, height: number) =>
      world.putPlane(name(id), decodePose(pose), extent(width), extent(height)),
    onPlaneGeometry: (id: string, vertices: string, indices: string) =>
      world.putPlaneGeometry(name(id), geometry(vertices, indices)),
    onPlaneRemove: (id: string) => world.removePlane(id),
    onPlaneClear: () => world.clearPlanes(),

    onNativeResign: () => events.emit('resign', undefined),
    onNativeActivate: () => events.emit('activate', undefined),
    onNativeEnterBackground: () => events.emit('background', undefined),

    onAppDetailUpdate: (json: string) => world.set('appDetail', appDetail(json)),
    onFeatureFlagsUpdate: (json: string) => world.set('flags', flags(json)),
  } satisfies Calls;
  return guarded(calls);
}

function perspective(payload: string): Projection {
  const matrix = decodeMatrix(payload);
  if (matrix[0] === 0 || matrix[5] === 0 || matrix[11] === 0)
    throw new PayloadError('no perspective: there is no camera yet');
  return new Projection(matrix);
}

function geometry(vertexPayload: string, indexPayload: string): PlaneGeometry {
  const vertices = decodeVectors(vertexPayload);
  const indices = decodeIndices(indexPayload);
  if (indices.length % 3 !== 0) throw new PayloadError(`${indices.length} indices, not a multiple of 3`);
  if (!indices.every((index) => index >= 0 && index < vertices.length))
    throw new PayloadError('an index without a vertex');
  return { vertices, indices };
}

function trackingState(word: string): TrackingState {
  const state = trackingStates.find((known) => known === word);
  if (!state) throw new PayloadError(`"${word}" is no tracking state`);
  return state;
}

function appDetail(payload: string): AppDetail {
  const value = decodeJson(payload);
  if (typeof value !== 'object' || value === null || Array.isArray(value)) throw new PayloadError('not a JSON object');
  return value as AppDetail;
}

function flags(payload: string): string[] {
  const value = decodeJson(payload);
  if (!Array.isArray(value)) throw new PayloadError('not a JSON array');
  return value.filter((flag) => typeof flag === 'string');
}

function name(value: string): string {
  if (typeof value !== 'string') throw new PayloadError('no identifier');
  return value;
}

function extent(value: number): number {
  if (!(Number.isFinite(value) && value >= 0)) throw new PayloadError(`${value} is no size`);
  return value;
}

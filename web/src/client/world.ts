import type { Plane, PlaneGeometry, Trigger } from './anchors.js';
import { Emitter } from './emitter.js';
import type { CameraPose, Pose } from './pose.js';
import type { Projection } from './projection.js';
import type {
  AppDetail,
  DeviceInfo,
  OpenRequest,
  QRScannerResult,
  ScanResult,
  SdkEvent,
  TrackingState,
  Viewport,
} from './records.js';

/** What can be listened to, and what each listener is given. */
export interface ClientEvents {
  /** Once a camera frame. */
  pose: CameraPose;
  /** When it changes, not every frame. */
  projection: Projection;
  viewport: Viewport;
  tracking: TrackingState;
  /** About every 2 seconds: 0 (dark) to 1 (bright). */
  light: number;

  planesStarted: void;
  planeAdded: Plane;
  /** Its pose, its size or its geometry changed. */
  planeUpdated: Plane;
  planeRemoved: Plane;
  /** All planes are gone; positions of the old session mean nothing in the next one. */
  planesCleared: void;

  triggersStarted: void;
  triggerAdded: Trigger;
  triggerUpdated: Trigger;
  triggerRemoved: Trigger;
  triggersCleared: void;

  /** The host application lost the focus, or the host paused the view. */
  resign: void;
  /** It has it again, or the host resumed the view. */
  activate: void;
  /** It went into the background. */
  background: void;

  appDetail: AppDetail;
  flags: readonly string[];

  deviceInfo: DeviceInfo;
  scanResult: ScanResult;
  qrResult: QRScannerResult;
  open: OpenRequest;
  /** Every event of the JSON channel, after the particular one. */
  sdkEvent: SdkEvent;
}

type Latest = Partial<
  Pick<ClientEvents, 'pose' | 'projection' | 'viewport' | 'tracking' | 'light' | 'appDetail' | 'flags'>
>;

/** What the native side has told so far. Everything is stored before the listeners hear of it. */
export class World {
  readonly events = new Emitter<ClientEvents>();
  readonly latest: Latest = {};
  readonly planes = new Map<string, Plane>();
  readonly triggers = new Map<string, Trigger>();

  set<K extends keyof Latest & keyof ClientEvents>(name: K, value: ClientEvents[K]): void {
    (this.latest as Pick<ClientEvents, K>)[name] = value;
    this.events.emit(name, value);
  }

  // The native side says "update" for a plane or trigger that is new, too: the maps tell the two apart.

  putPlane(id: string, pose: Pose, width: number, height: number): void {
    const known = this.planes.get(id);
    const plane = { ...known, id, pose, width, height };
    this.planes.set(id, plane);
    this.events.emit(known ? 'planeUpdated' : 'planeAdded', plane);
  }

  putPlaneGeometry(id: string, geometry: PlaneGeometry): void {
    const known = this.planes.get(id);
    if (!known) return; // its removal overtook it
    const plane = { ...known, geometry };
    this.planes.set(id, plane);
    this.events.emit('planeUpdated', plane);
  }

  removePlane(id: string): void {
    const plane = this.planes.get(id);
    if (this.planes.delete(id)) this.events.emit('planeRemoved', plane!);
  }

  clearPlanes(): void {
    this.planes.clear();
    this.events.emit('planesCleared', undefined);
  }

  putTrigger(id: string, pose: Pose, width: number, height: number): void {
    const known = this.triggers.has(id);
    const trigger = { id, pose, width, height };
    this.triggers.set(id, trigger);
    this.events.emit(known ? 'triggerUpdated' : 'triggerAdded', trigger);
  }

  removeTrigger(id: string): void {
    const trigger = this.triggers.get(id);
    if (this.triggers.delete(id)) this.events.emit('triggerRemoved', trigger!);
  }

  clearTriggers(): void {
    this.triggers.clear();
    this.events.emit('triggersCleared', undefined);
  }
}

import type { Plane, Trigger } from './anchors.js';
import { Commands } from './commands.js';
import type { Listener } from './emitter.js';
import { nativeIn, type NativeIn } from './native-in.js';
import { Outbox, type MessageHandlers } from './outbox.js';
import type { CameraPose } from './pose.js';
import type { Projection } from './projection.js';
import type { AppDetail, TrackingState, Viewport } from './records.js';
import { sdkEventHandler } from './sdk-events.js';
import type { EventData, WebEvents } from './web-events.js';
import { World, type ClientEvents } from './world.js';

/** The parts of `window` that page and native side share. */
export interface NativePage extends MessageHandlers {
  __KRJ_Native_IN?: NativeIn;
  kestrinSDKEventHandler?: (base64: string) => void;
}

/**
 * The native side, as a page sees it. One a page: make it in the page's first script, add listeners, then `start()`.
 *
 * The world frame is right-handed, in metres, y up. A value is stored before the listeners hear of it, so what came
 * earlier than a listener is found in the fields. In an ordinary browser everything stays undefined and empty.
 */
export class KestrinClient {
  readonly #world = new World();
  readonly #outbox: Outbox;

  /** The events that the native side knows, as functions. */
  readonly commands: Commands;

  constructor(page: NativePage = globalThis as NativePage) {
    this.#outbox = new Outbox(page);
    this.commands = new Commands(this.#outbox, this.#world);
    page.__KRJ_Native_IN = nativeIn(this.#world);
    page.kestrinSDKEventHandler = sdkEventHandler(this.#world);
  }

  /** Says that the page can draw, then starts camera and tracking. Poses come only after this. */
  start(): void {
    this.commands.webGLReady();
    this.commands.resumeAREngine(); // before the next: only resuming starts the camera
    this.commands.startMarkerless();
  }

  /** @returns a function that takes the listener off again */
  on<K extends keyof ClientEvents>(name: K, listener: Listener<ClientEvents[K]>): () => void {
    return this.#world.events.on(name, listener);
  }

  /** Sends an event with its data. @returns false in an ordinary browser, where nobody receives it */
  post<K extends keyof WebEvents>(eventName: K, ...data: EventData<K>): boolean {
    return this.#outbox.post(eventName, ...data);
  }

  /** To be called after each frame that the page has drawn: the camera picture is paced by it. */
  submit(): void {
    this.#outbox.submit();
  }

  /** The newest camera pose. */
  get pose(): CameraPose | undefined {
    return this.#world.latest.pose;
  }

  get projection(): Projection | undefined {
    return this.#world.latest.projection;
  }

  get viewport(): Viewport | undefined {
    return this.#world.latest.viewport;
  }

  get tracking(): TrackingState | undefined {
    return this.#world.latest.tracking;
  }

  /** 0 (dark) to 1 (bright). */
  get light(): number | undefined {
    return this.#world.latest.light;
  }

  get appDetail(): AppDetail | undefined {
    return this.#world.latest.appDetail;
  }

  /** The feature flags; they come after `commands.startAREngine()`. */
  get flags(): readonly string[] | undefined {
    return this.#world.latest.flags;
  }

  /** By id, kept up to date. Planes and triggers are never tracked together: the feature flags choose. */
  get planes(): ReadonlyMap<string, Plane> {
    return this.#world.planes;
  }

  /** By id, kept up to date. */
  get triggers(): ReadonlyMap<string, Trigger> {
    return this.#world.triggers;
  }
}

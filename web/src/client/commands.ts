import type { Outbox } from './outbox.js';
import type { ScanResult } from './records.js';
import { ScanQueue } from './scan-queue.js';
import type { FreeData, ScanArea, Screenshot, SnapOptions } from './web-events.js';
import type { World } from './world.js';

/** How long a scan waits for its answer, in milliseconds. */
const scanPatience = 10_000;

/** Each event that the native side knows, as a function. All return at once. */
export class Commands {
  readonly #outbox: Outbox;
  readonly #scans: ScanQueue;

  constructor(outbox: Outbox, world: World) {
    this.#outbox = outbox;
    this.#scans = new ScanQueue(world);
  }

  /** Answered by the events `appDetail` and `deviceInfo`. */
  requestSDKDeviceInfo(): void {
    this.#outbox.post('onRequestSDKDeviceInfo');
  }

  /** The page can draw: takes the loading overlay away. Answered as `requestSDKDeviceInfo` is. */
  webGLReady(): void {
    this.#outbox.post('onWebGLReady');
  }

  /** Stops tracking and camera and asks for the feature flags anew: then come the events `appDetail` and `flags`. */
  startAREngine(): void {
    this.#outbox.post('onStartAREngine');
  }

  /** Stops tracking and camera. */
  stopAREngine(): void {
    this.#outbox.post('onStopAREngine');
  }

  /** Stops tracking and camera. */
  pauseAREngine(): void {
    this.#outbox.post('onPauseAREngine');
  }

  /** Starts camera and session. Only this makes poses arrive. */
  resumeAREngine(): void {
    this.#outbox.post('onResumeAREngine');
  }

  /** Starts following the world; does not start a stopped camera. */
  startMarkerless(): void {
    this.#outbox.post('onStartMarkerless');
  }

  /** For experiences that place their content themselves; the native side only takes note. */
  startMarkerlessPlacement(): void {
    this.#outbox.post('onStartMarkerlessPlacement');
  }

  /** Opens an address outside the page, in the desktop's own program for it. */
  openExternalUrl(url: string): void {
    this.#outbox.post('onOpenExternalUrl', { url });
  }

  /** Asks for the application's start command, which comes as `sdkEvent`. */
  requestApplication(): void {
    this.#outbox.post('onRequestApplication');
  }

  /** Passed on to the host application. */
  enableTriggers(data?: FreeData): void {
    this.#outbox.post('onEnableTriggers', data);
  }

  /** Drops all tracked triggers, if the feature flag "triggerlock" is set. */
  forceLoseTracking(): void {
    this.#outbox.post('onForceLoseTracking');
  }

  /** Saves camera picture and page drawing as one picture. The user may be asked for permission. */
  captureScreenshot(screenshot: Screenshot): void {
    this.#outbox.post('onCaptureScreenshot', screenshot);
  }

  /** The same as `captureScreenshot`. */
  captureScreenshotShare(screenshot: Screenshot): void {
    this.#outbox.post('onCaptureScreenshotShare', screenshot);
  }

  /** Opens the share sheet for a picture: a data URL or an address. */
  share(imageUrl: string, text?: string): void {
    this.#outbox.post('onShare', text === undefined ? { imageUrl } : { imageUrl, text });
  }

  /** Sends a part of the camera picture to the server's text look-up. Waits its turn behind other scans; undefined if nothing comes. */
  scanMarker(area?: ScanArea): Promise<ScanResult | undefined> {
    return this.#scans.ask(() => this.#outbox.post('onScanMarker', area), scanPatience);
  }

  /** Looks for a QR code or a trigger in the camera picture. Waits its turn behind other scans; undefined if nothing comes. */
  scanTriggerSnap(options?: SnapOptions): Promise<ScanResult | undefined> {
    return this.#scans.ask(() => this.#outbox.post('onScanTriggerSnap', options), scanPatience);
  }

  /** Reads QR codes from now on: each comes as the event `qrResult`. */
  startQRScanner(): void {
    this.#outbox.post('onStartQRScanner');
  }

  stopQRScanner(): void {
    this.#outbox.post('onStopQRScanner');
  }

  /** Leaves for another application, given by its key string. The page is loaded anew. */
  changeApp(keyString: string): void {
    this.#outbox.post('onChangeApp', { data: keyString });
  }

  /** Passed on to the host application. */
  sendAnalytics(data?: FreeData): void {
    this.#outbox.post('onSendAnalytics', data);
  }

  /** Passed on to the host application. */
  webUpdate(data?: FreeData): void {
    this.#outbox.post('onWebUpdate', data);
  }
}

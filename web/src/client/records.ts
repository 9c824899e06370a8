// What the native side sends as JSON. The texts come from the device, the host and the server: nothing here is checked further.

/** The view's size in native units: use its shape, and the page's own window for pixels. */
export interface Viewport {
  readonly width: number;
  readonly height: number;
}

/**
 * How well the camera is being followed. "Normal": poses can be trusted. "Init": starting, or the trigger pictures are
 * loaded. "LoadingImageTrackers": waiting for them; the page is hidden meanwhile.
 */
export type TrackingState = (typeof trackingStates)[number];

export const trackingStates = [
  'Normal',
  'Init',
  'Relocalizing',
  'ExcessiveMotion',
  'InsufficientFeatures',
  'LoadingImageTrackers',
] as const;

/** About the host application. The first four are what the host put there, of any JSON type. */
export interface AppDetail {
  readonly version: unknown;
  readonly build: unknown;
  readonly bundle_id: unknown;
  readonly app_type: unknown;
  readonly platform: string;
  readonly device_id: string;
  readonly device_type: string;
}

/** The answer to `requestSDKDeviceInfo` and `webGLReady`. */
export interface DeviceInfo {
  readonly name: string | null;
  readonly systemName: string | null;
  readonly model: string | null;
  readonly systemVersion: string | null;
  readonly sdkVersion: string | null;
  readonly engine: string;
  /** The address that opened the application, or the text "null". */
  readonly urlParams: unknown;
  /** Application ids, once the application was changed. */
  readonly app_change_from?: string;
  readonly app_change_into?: string;
}

/** The answer to `scanMarker` and `scanTriggerSnap`. */
export interface ScanResult {
  /** The server's answer; or `{ id, type: "qrcode" | "trigger" }` of something found in the picture; or the text "none". */
  readonly rawData: unknown;
  /** Empty when all went well; the server's error; or the text "null". */
  readonly error: unknown;
}

/** A QR code read after `startQRScanner`. */
export interface QRScannerResult {
  readonly text: string;
}

/** The host asks the experience to open one of its objects. */
export interface OpenRequest {
  /** "scene", "page" or "application". */
  readonly type: string;
  readonly id: string;
}

/** Any named event of the JSON channel, those above included. */
export interface SdkEvent {
  /** Begins with "sdk". */
  readonly eventName: string;
  readonly data: unknown;
}

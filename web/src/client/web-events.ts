/** A picture of what the page has drawn, to be laid over the camera picture. */
export interface Screenshot {
  /** A data URL; an image with transparency. */
  image: string;
  /** If present, the share sheet opens when the picture is saved, with these texts. */
  share?: { title?: string; subject?: string; text?: string };
}

/** Which part of the camera picture to send, in the picture's points. What is left out has a default: a wide strip in the middle. */
export interface ScanArea {
  startX?: number;
  startY?: number;
  width?: number;
  height?: number;
  /** Where to send it, instead of the application's own server. */
  postURL?: string;
}

export interface SnapOptions {
  /** The application whose triggers are searched, instead of the running one. */
  appId?: string;
  /** Where to send the picture, instead of the application's own server. */
  postURL?: string;
}

/** Free-form data of events that the native side only passes on to its host. */
export type FreeData = Record<string, unknown>;

/** The events that the native side knows, and the data that goes with each. */
export interface WebEvents {
  onRequestSDKDeviceInfo: undefined;
  onWebGLReady: undefined;
  onStartAREngine: undefined;
  onStopAREngine: undefined;
  onPauseAREngine: undefined;
  onResumeAREngine: undefined;
  onOpenExternalUrl: { url: string };
  onRequestApplication: undefined;
  onEnableTriggers: FreeData | undefined;
  onForceLoseTracking: undefined;
  onCaptureScreenshot: Screenshot;
  onStartMarkerless: undefined;
  onSendAnalytics: FreeData | undefined;
  onStartMarkerlessPlacement: undefined;
  onScanMarker: ScanArea | undefined;
  onChangeApp: { data: string };
  onWebUpdate: FreeData | undefined;
  onScanTriggerSnap: SnapOptions | undefined;
  onCaptureScreenshotShare: Screenshot;
  onStartQRScanner: undefined;
  onStopQRScanner: undefined;
  onShare: { imageUrl: string; text?: string };
}

/** The arguments that go with an event's name: none, one that may be left out, or one that must be given. */
export type EventData<K extends keyof WebEvents> = undefined extends WebEvents[K]
  ? [data?: WebEvents[K]]
  : [data: WebEvents[K]];

import { decodeJson, PayloadError } from './decode.js';
import { guarded } from './guard.js';
import type { DeviceInfo, OpenRequest, QRScannerResult, ScanResult, SdkEvent } from './records.js';
import type { World } from './world.js';

/** Makes the function that native code calls as `window.kestrinSDKEventHandler`: base64 of a JSON array of events. */
export function sdkEventHandler(world: World): (base64: string) => void {
  const calls = {
    kestrinSDKEventHandler: (base64: string) => {
      for (const event of decodeBatch(base64)) deliver(world, event);
    },
  };
  return guarded(calls).kestrinSDKEventHandler;
}

function decodeBatch(base64: string): SdkEvent[] {
  const batch = decodeJson(fromBase64(base64));
  if (!Array.isArray(batch)) throw new PayloadError('not a JSON array');
  return batch.filter(isEvent);
}

function fromBase64(text: string): string {
  try {
    return atob(text);
  } catch {
    throw new PayloadError('not base64');
  }
}

function isEvent(value: unknown): value is SdkEvent {
  const named = typeof value === 'object' && value !== null && typeof (value as SdkEvent).eventName === 'string';
  if (!named) console.warn('Kestrin: kestrinSDKEventHandler skipped an event without a name');
  return named;
}

function deliver({ events }: World, event: SdkEvent): void {
  switch (event.eventName) {
    case 'sdkDeviceInfo':
      events.emit('deviceInfo', event.data as DeviceInfo);
      break;
    case 'sdkScanMarkerResult':
      events.emit('scanResult', event.data as ScanResult);
      break;
    case 'sdkQRScannerResult':
      events.emit('qrResult', event.data as QRScannerResult);
      break;
    case 'sdkTrigger':
      events.emit('open', event.data as OpenRequest);
      break;
  }
  events.emit('sdkEvent', event);
}

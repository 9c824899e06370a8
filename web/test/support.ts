import { vi } from 'vitest';
import { KestrinClient, type NativePage } from '../src/client/index.js';

/** A page with a native side that keeps what it is sent. */
export function makePage() {
  const bodies: string[] = [];
  const page: NativePage = { webkit: { messageHandlers: { kestrin: { postMessage: (body) => bodies.push(body) } } } };
  const client = new KestrinClient(page);
  /** Runs a script as the native side would. */
  const evaluate = (script: string) => new Function('window', script)(page) as unknown;
  return { client, page, evaluate, bodies, posted: () => bodies.map(decodeBody) };
}

/** The bare word as it is, anything else as the object that the native side reads. */
export function decodeBody(body: string): unknown {
  return body === 'onSubmit'
    ? body
    : JSON.parse(new TextDecoder().decode(Uint8Array.from(atob(body), (c) => c.charCodeAt(0))));
}

export function base64(text: string): string {
  return btoa(binary(new TextEncoder().encode(text)));
}

/** Floats as a binary string, in this machine's byte order, which is little-endian. */
export function floats(...values: number[]): string {
  return binary(new Uint8Array(new Float32Array(values).buffer));
}

/** 32-bit indices as a binary string. */
export function indices(...values: number[]): string {
  return binary(new Uint8Array(new Int32Array(values).buffer));
}

function binary(bytes: Uint8Array): string {
  return Array.from(bytes, (byte) => String.fromCharCode(byte)).join('');
}

/** Position and, unless given, no rotation. */
export function pose(x: number, y: number, z: number, ...quaternion: number[]): string {
  return floats(x, y, z, ...(quaternion.length ? quaternion : [0, 0, 0, 1]));
}

/** Keeps the console quiet and remembers what was said. */
export function silenceConsole() {
  return {
    warn: vi.spyOn(console, 'warn').mockImplementation(() => undefined),
    error: vi.spyOn(console, 'error').mockImplementation(() => undefined),
  };
}

import type { EventData, WebEvents } from './web-events.js';

/** The part of `window` that carries messages to the native side. */
export interface MessageHandlers {
  webkit?: { messageHandlers?: { kestrin?: { postMessage(body: string): void } } };
}

/** Messages from the page to the native side. */
export class Outbox {
  readonly #page: MessageHandlers;
  #warned = false;

  constructor(page: MessageHandlers) {
    this.#page = page;
  }

  /** @returns whether there is a native side to send to */
  post<K extends keyof WebEvents>(eventName: K, ...[data]: EventData<K>): boolean {
    return this.#send(base64(JSON.stringify({ eventName, data })));
  }

  /** The bare word, sent after each frame that the page has drawn: it paces the camera picture. */
  submit(): boolean {
    return this.#send('onSubmit');
  }

  #send(body: string): boolean {
    // Looked up each time: a host may install the handler after the page's first script has run.
    const handler = this.#page.webkit?.messageHandlers?.kestrin;
    if (handler) handler.postMessage(body);
    else if (!this.#warned)
      console.warn('Kestrin: there is no native side here (an ordinary browser?): messages go nowhere');
    this.#warned = !handler;
    return handler !== undefined;
  }
}

function base64(text: string): string {
  const bytes = new TextEncoder().encode(text);
  const chunk = 0x8000; // a screenshot has more bytes than a call may have arguments
  let binary = '';
  for (let i = 0; i < bytes.length; i += chunk) binary += String.fromCharCode(...bytes.subarray(i, i + chunk));
  return btoa(binary);
}

import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { KestrinClient, type NativePage } from '../src/client/index.js';
import { base64, decodeBody, makePage, silenceConsole } from './support.js';

describe('messages', () => {
  it('carry any text, as base64 of UTF-8 JSON', () => {
    const { client, bodies } = makePage();
    const text = 'Grüße, 山, 🎲, \0, \ud800';
    client.commands.openExternalUrl(text);
    expect(bodies[0]).toMatch(/^[A-Za-z0-9+/]+=*$/);
    expect(decodeBody(bodies[0]!)).toEqual({ eventName: 'onOpenExternalUrl', data: { url: text } });
  });

  it('go nowhere in an ordinary browser, which is said once', () => {
    const { warn } = silenceConsole();
    const page: NativePage = {};
    const client = new KestrinClient(page);
    client.start();
    client.submit();
    expect(client.post('onWebUpdate', {})).toBe(false);
    expect(warn).toHaveBeenCalledOnce();

    const postMessage = vi.fn();
    page.webkit = { messageHandlers: { kestrin: { postMessage } } }; // installed late
    client.submit();
    expect(postMessage).toHaveBeenCalledOnce();
    vi.restoreAllMocks();
  });

  it('has a command for each of the 22 events, under its name', () => {
    const { client, posted } = makePage();
    const { commands } = client;
    const names = Object.getOwnPropertyNames(Object.getPrototypeOf(commands)).filter((name) => name !== 'constructor');
    const capital = (name: string) => `on${name[0]!.toUpperCase()}${name.slice(1)}`;
    const asked = names.filter((name) => !name.startsWith('scan')); // those wait their turn
    for (const name of asked) (commands as unknown as Record<string, (a: unknown) => void>)[name]!({});
    expect(names).toHaveLength(22);
    expect(posted().map((event) => (event as { eventName: string }).eventName)).toEqual(asked.map(capital));
  });
});

describe('scanning', () => {
  beforeEach(() => void vi.useFakeTimers());
  afterEach(() => void vi.useRealTimers());

  function answer(page: NativePage, rawData: string) {
    page.kestrinSDKEventHandler!(
      base64(JSON.stringify([{ eventName: 'sdkScanMarkerResult', data: { rawData, error: '' } }])),
    );
  }

  it('asks one question at a time, and gives each its own answer', async () => {
    const { client, page, posted } = makePage();
    const snap = client.commands.scanTriggerSnap();
    const scan = client.commands.scanMarker({ startX: 3 });
    await vi.advanceTimersByTimeAsync(0);
    expect(posted()).toEqual([{ eventName: 'onScanTriggerSnap' }]);

    answer(page, 'first');
    await vi.advanceTimersByTimeAsync(0);
    expect(posted()).toHaveLength(2);
    answer(page, 'second');
    expect(await snap).toMatchObject({ rawData: 'first' });
    expect(await scan).toMatchObject({ rawData: 'second' });
  });

  it('gives up on a snap that is never answered, and goes on with the next', async () => {
    const { client, posted } = makePage();
    const snap = client.commands.scanTriggerSnap();
    void client.commands.scanMarker();
    await vi.advanceTimersByTimeAsync(10_000);
    expect(await snap).toBeUndefined();
    expect(posted()).toHaveLength(2);
  });
});

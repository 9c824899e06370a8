import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { ClientEvents } from '../src/client/index.js';
import { base64, floats, indices, makePage, silenceConsole } from './support.js';

let said: ReturnType<typeof silenceConsole>;
beforeEach(() => {
  said = silenceConsole();
});
afterEach(() => vi.restoreAllMocks());

/** Writes down the names of events as they come. */
function record(client: ReturnType<typeof makePage>['client'], ...names: (keyof ClientEvents)[]) {
  const seen: string[] = [];
  for (const name of names) client.on(name, () => seen.push(name));
  return seen;
}

describe('native calls', () => {
  it('become events, in their order, stored before anyone hears of them', () => {
    const { client, evaluate } = makePage();
    const stored: unknown[] = [];
    client.on('projection', () => stored.push(client.projection?.native[5]));
    client.on('viewport', (viewport) => stored.push(client.viewport === viewport && viewport));
    client.on('pose', () => stored.push(client.pose?.timestamp));
    client.on('light', (light) => stored.push(client.light === light && light));
    client.on('tracking', (word) => stored.push(client.tracking === word && word));
    client.on('flags', (flags) => stored.push(client.flags === flags && flags));
    client.on('appDetail', (detail) => stored.push(client.appDetail === detail && detail));
    const call = (name: string, args: string) => evaluate(`window.__KRJ_Native_IN.${name}(${args});`);

    call('onProj', "atob('AACAPwAAAAAAAAAAAAAAAAAAAAAAAABAAAAAAAAAAAAAAAAAAAAAAAAAgL8AAIC/AAAAAAAAAAAAAADAAAAAAA==')");
    call('onViewportUpdate', '750.000000,1334.000000');
    call('onPose', "atob('AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPwAAwD8=')");
    call('onLightEstimate', "atob('AAAAPw==')");
    call('onTrackingReasonChange', "'Relocalizing'");
    call('onFeatureFlagsUpdate', `atob('${base64('["snap",7,"größe"]')}')`);
    call('onAppDetailUpdate', `atob('${base64('{"device_type":"キオスク"}')}')`);

    expect(stored).toEqual([
      2,
      { width: 750, height: 1334 },
      1.5,
      0.5,
      'Relocalizing',
      ['snap', 'größe'],
      { device_type: 'キオスク' },
    ]);
  });

  it.each([
    ['onPose', [floats(1, 2, 3)]],
    ['onProj', [floats(...new Array<number>(16).fill(0))]], // sent while there is no camera
    ['onViewportUpdate', [NaN, 1]],
    ['onTrackingReasonChange', ['Bored']],
    ['onPlaneGeometry', ['a', floats(0, 0, 0), indices(0, 0, 1)]],
    ['onAppDetailUpdate', ['[]']],
  ])('%s with %j is ignored, with a warning', (name, args) => {
    const { client, page } = makePage();
    const seen = record(client, 'pose', 'projection', 'viewport', 'tracking', 'planeUpdated', 'appDetail');
    const calls = page.__KRJ_Native_IN as unknown as Record<string, (...args: unknown[]) => void>;
    calls[name]!(...args);
    expect(seen).toEqual([]);
    expect(said.warn).toHaveBeenCalledWith(expect.stringContaining(`${name} ignored`));
  });

  it('survive a listener that throws; the other listeners are still called', () => {
    const { client, page } = makePage();
    client.on('light', () => {
      throw new Error('the page’s own fault');
    });
    const seen = record(client, 'light');
    page.__KRJ_Native_IN!.onLightEstimate(floats(1));
    expect(seen).toEqual(['light']);
    expect(said.error).toHaveBeenCalledOnce();
  });
});

describe('the JSON channel', () => {
  const send = (page: ReturnType<typeof makePage>['page'], json: string) => page.kestrinSDKEventHandler!(base64(json));

  it('delivers a batch in its order, each event under its own name and then as sdkEvent', () => {
    const { client, page } = makePage();
    const seen: unknown[] = [];
    client.on('qrResult', ({ text }) => seen.push(text));
    client.on('open', ({ type, id }) => seen.push([type, id]));
    client.on('sdkEvent', ({ eventName }) => seen.push(eventName));
    send(
      page,
      `[{"eventName":"sdkQRScannerResult","data":{"text":"Zürich ☕"}},
        {"eventName":"sdkloadapplication","data":{"appID":"7"}},
        {"eventName":"sdkTrigger","data":{"type":"scene","id":"9"}}]`,
    );
    expect(seen).toEqual(['Zürich ☕', 'sdkQRScannerResult', 'sdkloadapplication', ['scene', '9'], 'sdkTrigger']);
  });

  it('skips what has no name, and refuses what is no batch', () => {
    const { client, page } = makePage();
    const seen = record(client, 'sdkEvent');
    send(page, '[null, {"data":{}}, {"eventName":"sdkX","data":null}]');
    expect(seen).toHaveLength(1);
    send(page, '{"eventName":"sdkX"}');
    page.kestrinSDKEventHandler!('not base64!');
    expect(seen).toHaveLength(1);
    expect(said.warn).toHaveBeenCalledTimes(4);
  });
});

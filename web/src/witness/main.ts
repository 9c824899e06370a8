// Tells the host of everything that it is told, decoded, and of each click on its button, so that a test can compare.
// `client` is global: what a test wants asked, it asks through it.

import { KestrinClient, type ClientEvents } from '../client/index.js';

const events = [
  'pose',
  'projection',
  'viewport',
  'tracking',
  'light',
  'planesStarted',
  'planeAdded',
  'planeUpdated',
  'planeRemoved',
  'planesCleared',
  'triggersStarted',
  'triggerAdded',
  'triggerUpdated',
  'triggerRemoved',
  'triggersCleared',
  'resign',
  'activate',
  'background',
  'deviceInfo',
  'flags',
  'scanResult',
  'qrResult',
] as const satisfies readonly (keyof ClientEvents)[];

const client = new KestrinClient();
Object.assign(globalThis, { client });
const tell = (event: string, value?: unknown) => client.commands.webUpdate({ event, value });

for (const event of events) client.on(event, (value) => tell(event, value));
client.on('pose', () => client.submit());
document.querySelector('button')!.addEventListener('click', () => tell('click'));
client.start();

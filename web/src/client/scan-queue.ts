import type { ScanResult } from './records.js';
import type { World } from './world.js';

/**
 * Both ways of scanning are answered under one name, and an answer does not say which question it belongs to: so only
 * one is asked at a time, and the others wait for their turn.
 */
export class ScanQueue {
  readonly #world: World;
  #last: Promise<unknown> = Promise.resolve();

  constructor(world: World) {
    this.#world = world;
  }

  /**
   * @param send asks the question; false if there is nobody to ask
   * @param patience milliseconds to wait for the answer: a snap that sees no code is never answered
   * @returns undefined when nothing came
   */
  ask(send: () => boolean, patience: number): Promise<ScanResult | undefined> {
    const answer = this.#last.then(() => this.#askNow(send, patience));
    this.#last = answer;
    return answer;
  }

  #askNow(send: () => boolean, patience: number): Promise<ScanResult | undefined> {
    return new Promise((resolve) => {
      const finish = (result?: ScanResult) => {
        clearTimeout(timer);
        stopListening();
        resolve(result);
      };
      const timer = setTimeout(finish, patience);
      const stopListening = this.#world.events.on('scanResult', finish);
      if (!send()) finish();
    });
  }
}

import type { Plane } from '../client/index.js';
import { findGround, findTable } from './table.js';

/** How long to wait for a table before making do with the ground, in seconds. */
const patience = 1;

/** Decides on which plane the cube stands. */
export class Placement {
  #since: number | undefined;
  #onTable = false;
  #placed = false;

  /**
   * Once on a table, the cube stays where it is; from the ground it moves to a table that turns up later.
   *
   * @param seconds time of the frame
   * @returns the plane to put the cube on now; undefined to leave everything as it is
   */
  next(planes: ReadonlyMap<string, Plane>, seconds: number): Plane | undefined {
    if (this.#onTable || planes.size === 0) return undefined;
    this.#since ??= seconds;
    const table = findTable(planes.values());
    const waited = seconds - this.#since >= patience;
    const plane = table ?? (waited && !this.#placed ? findGround(planes.values()) : undefined);
    this.#onTable = table !== undefined;
    this.#placed ||= plane !== undefined;
    return plane;
  }
}

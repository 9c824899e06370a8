import type { Matrix4 } from './pose.js';

/**
 * The camera's perspective for the current viewport: content drawn with it over the whole window lands on the picture.
 *
 * The native matrix has its near plane at 1 m and its far plane at 200 km, which would cut off a table in front of the
 * camera; ask `matrix` for one with the page's own depth range.
 */
export class Projection {
  /** @param native the sixteen numbers as received, column-major */
  constructor(readonly native: Readonly<Matrix4>) {}

  /**
   * The same perspective with another depth range, for WebGL's clip space (z from -1 to 1).
   *
   * The x, y and w rows are the native ones, bit for bit: only depth changes, never where a point is on the screen.
   *
   * @param near metres, greater than 0
   * @param far metres, greater than `near`; may be `Infinity`
   */
  matrix(near: number, far: number): Matrix4 {
    const result = [...this.native];
    const infinite = far === Infinity;
    result[2] = 0;
    result[6] = 0;
    result[10] = infinite ? -1 : (far + near) / (near - far);
    result[14] = infinite ? -2 * near : (2 * far * near) / (near - far);
    return result;
  }
}

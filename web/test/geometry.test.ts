import { describe, expect, it } from 'vitest';
import { Pose, Projection, type Matrix4 } from '../src/client/index.js';

const half = Math.SQRT1_2;

function transform(m: Readonly<Matrix4>, v: number[]): number[] {
  return [0, 1, 2, 3].map((row) => v.reduce((sum, x, column) => sum + m[4 * column + row]! * x, 0));
}

it('a pose takes local points to the world and back', () => {
  const turned = new Pose([1, 2, 3], [0, half, 0, half]); // a quarter to the left
  const ahead = transform(turned.matrix, [0, 0, -1, 1]);
  expect(ahead).toEqual([expect.closeTo(0), 2, expect.closeTo(3), 1]);
  expect(transform(turned.inverse, ahead)).toEqual([0, 0, -1, 1].map((v) => expect.closeTo(v) as number));
});

describe('a projection with the page’s own depth range', () => {
  // Near 1, far 200000; skewed, off-centre, and with depth that depends on x and y, so that no element is a special case.
  const native = [1.2, 0.01, 0.3, 0, 0.02, 1.9, -0.2, 0, 0.1, -0.05, -1.00001, -1, 0, 0, -2.00001, 0];
  const depthOf = (m: Matrix4, z: number) => {
    const clip = transform(m, [0.4, -0.7, z, 1]);
    return clip[2]! / clip[3]!;
  };

  it('leaves every point where it is on the screen', () => {
    const rebuilt = new Projection(native).matrix(0.02, 100);
    const rows = (m: number[]) => m.filter((_, i) => i % 4 !== 2);
    expect(rows(rebuilt)).toEqual(rows(native));
  });

  it.each([
    [0.02, 100],
    [0.5, Infinity],
  ])('maps %d … %d to the clip range', (near, far) => {
    const rebuilt = new Projection(native).matrix(near, far);
    expect(depthOf(rebuilt, -near)).toBeCloseTo(-1, 9);
    expect(depthOf(rebuilt, -Math.min(far, 1e12))).toBeCloseTo(1, 9);
  });
});

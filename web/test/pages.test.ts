import { describe, expect, it } from 'vitest';
import { Pose, type Plane, type Quaternion, type Vector3 } from '../src/client/index.js';
import { Placement } from '../src/demo/placement.js';
import { rounded } from '../src/demo/rounded.js';
import { findTable } from '../src/demo/table.js';

const upright: Quaternion = [0, 0, 0, 1];
const upsideDown: Quaternion = [1, 0, 0, 0];
const wall: Quaternion = [Math.SQRT1_2, 0, 0, Math.SQRT1_2];

function plane(id: string, y: number, side: number, orientation = upright): Plane {
  return { id, pose: new Pose([0, y, 0], orientation), width: side, height: side };
}

const mapOf = (...planes: Plane[]) => new Map(planes.map((p) => [p.id, p]));
const floor = plane('floor', -1.2, 4);
const table = plane('table', -0.45, 1);

describe('the table', () => {
  it.each([
    ['the largest at its height', [floor, plane('stool', -0.7, 0.3), table], 'table'],
    ['no step', [floor, plane('step', -0.9, 1)], undefined],
    [
      'no ceiling, shelf or wall',
      [floor, plane('ceiling', 0, 4, upsideDown), plane('shelf', 0.8, 1), plane('wall', -0.4, 3, wall)],
      undefined,
    ],
    ['not known without a floor', [table], undefined],
  ])('is %s', (_, planes, expected) => {
    expect(findTable(planes)?.id).toBe(expected);
  });
});

describe('the cube', () => {
  it('waits a second before it makes do with the floor, and moves when a table turns up', () => {
    const placement = new Placement();
    expect(placement.next(mapOf(floor), 10)).toBeUndefined();
    expect(placement.next(mapOf(floor), 11)).toBe(floor);
    expect(placement.next(mapOf(floor), 12)).toBeUndefined();
    expect(placement.next(mapOf(floor, table), 13)).toBe(table);
  });
});

it('rounding keeps a loop inside itself, however short its edges', () => {
  const square: Vector3[] = [
    [0, 0, 0],
    [1, 0, 0],
    [1, 0, 1],
    [0, 0, 1],
  ];
  for (const radius of [0.1, 5]) {
    const points = rounded(square, radius).flat();
    expect(Math.min(...points)).toBeGreaterThanOrEqual(0);
    expect(Math.max(...points)).toBeLessThanOrEqual(1);
  }
});

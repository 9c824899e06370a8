import { describe, expect, it } from 'vitest';
import { checkPoints, misplace, project } from '../src/align/project.js';
import { Pose, Projection, type Plane, type Quaternion, type Vector3 } from '../src/client/index.js';
import { Placement } from '../src/demo/placement.js';
import { rounded } from '../src/demo/rounded.js';
import { findTable, middleOf } from '../src/demo/table.js';

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
    ['nothing at all', [], undefined],
  ])('is %s', (_, planes, expected) => {
    expect(findTable(planes)?.id).toBe(expected);
  });

  it('has its middle where its shape has it', () => {
    const vertices: Vector3[] = [
      [0, 0, 0],
      [2, 0, 0],
      [0, 0, 1],
    ];
    expect(middleOf({ ...table, geometry: { vertices, indices: [0, 1, 2] } })).toEqual([1, 0, 0.5]);
  });
});

describe('the cube', () => {
  it('goes onto the table at once and stays there', () => {
    const placement = new Placement();
    expect(placement.next(mapOf(), 0)).toBeUndefined();
    expect(placement.next(mapOf(floor, table), 0)).toBe(table);
    expect(placement.next(mapOf(floor, table, plane('larger', -0.4, 2)), 5)).toBeUndefined();
  });

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
  expect(
    rounded(
      [
        [1, 1, 1],
        [1, 1, 1],
      ],
      0.1,
    )
      .flat()
      .every(Number.isFinite),
  ).toBe(true);
});

describe('the alignment page', () => {
  const camera = new Pose([0, 0, 2], upright);
  const projection = new Projection([1, 0, 0, 0, 0, 2, 0, 0, 0, 0, -1, -1, 0, 0, -2, 0]);
  const size = { width: 200, height: 100 };

  it('counts pixels from the bottom left corner', () => {
    expect(project([0, 0, 0], camera, projection, size)).toEqual([100, 50]);
    expect(project([1, 0.5, 0], camera, projection, size)).toEqual([150, 75]);
  });

  it('leaves out what is behind the camera', () => {
    expect(project([0, 0, 2.1], camera, projection, size)).toBeUndefined();
    expect(project([0, 0, 2], camera, projection, size)).toBeUndefined();
  });

  it('misplaces on purpose: CSS pixels, downwards, and in the mirror', () => {
    expect(misplace([10, 20], { shiftX: 0.5, shiftY: 2 }, 200, 2)).toEqual([11, 16]);
    expect(misplace([10, 20], { mirror: true }, 200, 1)).toEqual([190, 20]);
    expect(misplace([10, 20], {}, 200, 1)).toEqual([10, 20]);
  });

  it('refuses points that are none', () => {
    expect(checkPoints([[1, 2, 3]])).toEqual([[1, 2, 3]]);
    for (const bad of ['x', [[1, 2]], [[1, 2, NaN]], [['1', '2', '3']], {}, null])
      expect(() => checkPoints(bad)).toThrow(TypeError);
  });
});

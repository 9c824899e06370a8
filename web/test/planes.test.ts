import { describe, expect, it } from 'vitest';
import { planeOutline, Pose, type Plane, type Vector3 } from '../src/client/index.js';
import { floats, indices, makePage, pose } from './support.js';

describe('the map of planes', () => {
  function listen() {
    const { client, page } = makePage();
    const seen: string[] = [];
    client.on('planeAdded', (plane) => seen.push(`added ${plane.id}`));
    client.on('planeUpdated', (plane) => seen.push(`updated ${plane.id}${plane.geometry ? ' shaped' : ''}`));
    client.on('planeRemoved', (plane) => seen.push(`removed ${plane.id}`));
    client.on('planesCleared', () => seen.push(`cleared to ${client.planes.size}`));
    return { client, seen, native: page.__KRJ_Native_IN! };
  }

  it('tells added from updated, keeps a shape over updates, and forgets what is removed', () => {
    const { client, seen, native } = listen();
    native.onPlaneStart();
    native.onPlaneUpdate('a', pose(0, 1, 0), 2, 3);
    const before = client.planes.get('a')!;
    native.onPlaneGeometry('a', floats(0, 0, 0, 1, 0, 0, 0, 0, 1), indices(0, 1, 2));
    native.onPlaneUpdate('a', pose(0, 1.5, 0), 2.5, 3);
    native.onPlaneUpdate('b', pose(0, 0, 0), 1, 1);

    expect(before).toMatchObject({ width: 2, height: 3, pose: { position: [0, 1, 0] } }); // an old object never changes
    expect(client.planes.get('a')).toMatchObject({
      width: 2.5,
      pose: { position: [0, 1.5, 0] },
      geometry: { indices: [0, 1, 2] },
    });

    native.onPlaneRemove('a');
    native.onPlaneRemove('a');
    native.onPlaneGeometry('a', '', '');
    native.onPlaneClear();
    native.onPlaneUpdate('a', pose(0, 0, 0), 1, 1);
    expect(seen).toEqual([
      'added a',
      'updated a shaped',
      'updated a shaped',
      'added b',
      'removed a',
      'cleared to 0',
      'added a',
    ]);
  });
});

describe('an outline', () => {
  const at = (x: number, z: number): Vector3 => [x, 0, z];
  const plane = (vertices?: Vector3[], triangles: number[] = []): Plane => ({
    id: 'a',
    pose: new Pose([0, 0, 0], [0, 0, 0, 1]),
    width: 4,
    height: 2,
    ...(vertices && { geometry: { vertices, indices: triangles } }),
  });
  /** Perimeters in metres: the same whichever point a loop begins with. */
  const perimeters = (loops: Vector3[][]) =>
    loops
      .map((loop) => loop.reduce((sum, p, i) => sum + Math.hypot(...p.map((v, k) => v - loop.at(i - 1)![k]!)), 0))
      .sort();

  it.each([
    ['a rectangle without geometry', plane(), [12]],
    ['two triangles, wound differently', plane([at(0, 0), at(2, 0), at(2, 1), at(0, 1)], [0, 1, 2, 0, 3, 2]), [6]],
    ['two islands', plane([at(0, 0), at(3, 0), at(0, 4), at(9, 0), at(15, 0), at(9, 8)], [0, 1, 2, 3, 4, 5]), [12, 24]],
    ['a triangle of a single point', plane([at(0, 0)], [0, 0, 0]), [12]],
  ])('of %s', (_, given, expected) => {
    expect(perimeters(planeOutline(given))).toEqual(expected);
  });
});

import type { Plane, PlaneGeometry } from './anchors.js';
import type { Vector3 } from './pose.js';

/**
 * The border of a plane: closed loops of points (the last joins the first), in metres, in the frame of the plane's pose.
 * Follows the exact shape if there is one, else the rectangle of width and height around the pose.
 */
export function planeOutline(plane: Plane): Vector3[][] {
  const loops = plane.geometry ? borderOf(plane.geometry) : [];
  return loops.length > 0 ? loops : [rectangle(plane.width / 2, plane.height / 2)];
}

function rectangle(x: number, z: number): Vector3[] {
  return [
    [-x, 0, -z],
    [-x, 0, z],
    [x, 0, z],
    [x, 0, -z],
  ];
}

/** An edge of one triangle only is on the border; an edge of two is inside. */
function borderOf({ vertices, indices }: PlaneGeometry): Vector3[][] {
  const open = new Set<string>();
  for (let i = 0; i < indices.length; i += 3) {
    for (const [a, b] of [
      [0, 1],
      [1, 2],
      [2, 0],
    ] as const) {
      const edge = [indices[i + a]!, indices[i + b]!].sort((m, n) => m - n).join();
      if (!open.delete(edge)) open.add(edge);
    }
  }
  return chain([...open].map((edge) => edge.split(',').map(Number) as [number, number])).map((loop) =>
    loop.map((i) => vertices[i]!),
  );
}

/** Joins edges into loops. */
function chain(edges: [number, number][]): number[][] {
  const neighbours = new Map<number, Set<number>>();
  for (const [a, b] of edges) {
    neighbours.set(a, (neighbours.get(a) ?? new Set()).add(b));
    neighbours.set(b, (neighbours.get(b) ?? new Set()).add(a));
  }
  const take = (from: number): number | undefined => {
    const next = neighbours.get(from)!.values().next().value;
    if (next === undefined) return undefined;
    neighbours.get(from)!.delete(next);
    neighbours.get(next)!.delete(from);
    return next;
  };
  const loops: number[][] = [];
  for (const start of neighbours.keys()) {
    const loop = [start];
    for (let at = take(start); at !== undefined && at !== start; at = take(at)) loop.push(at);
    if (loop.length > 2) loops.push(loop);
  }
  return loops;
}

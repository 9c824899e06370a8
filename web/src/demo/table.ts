import { planeOutline, type Plane, type Vector3 } from '../client/index.js';

/** A table top is this high above the lowest surface, in metres: more than a step, less than a shelf over one's head. */
const tableHeight = { least: 0.4, most: 1.4 };

/** True for a surface that things can stand on: its normal points up. */
export function facesUp(plane: Plane): boolean {
  return plane.pose.matrix[5]! > 0.9;
}

/** The largest plane at the height of a table. */
export function findTable(planes: Iterable<Plane>): Plane | undefined {
  const surfaces = [...planes].filter(facesUp);
  const floor = Math.min(...surfaces.map(heightOf));
  return largest(
    surfaces.filter(
      (plane) => heightOf(plane) >= floor + tableHeight.least && heightOf(plane) <= floor + tableHeight.most,
    ),
  );
}

/** The largest plane that something can stand on. */
export function findGround(planes: Iterable<Plane>): Plane | undefined {
  return largest([...planes].filter(facesUp));
}

/** The middle of a plane, in the plane's own frame. */
export function middleOf(plane: Plane): Vector3 {
  const points = planeOutline(plane).flat();
  const middle = (axis: 0 | 1 | 2) => {
    const values = points.map((point) => point[axis]);
    return (Math.min(...values) + Math.max(...values)) / 2;
  };
  return [middle(0), middle(1), middle(2)];
}

function heightOf(plane: Plane): number {
  return plane.pose.position[1];
}

function largest(planes: Plane[]): Plane | undefined {
  return planes.sort((a, b) => b.width * b.height - a.width * a.height)[0];
}

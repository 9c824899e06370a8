import type { Vector3 } from '../client/index.js';

const steps = 6;

/** A closed loop with its corners rounded: each becomes a curve that begins at most `radius` metres before it. */
export function rounded(loop: readonly Vector3[], radius: number): Vector3[] {
  return loop.flatMap((corner, i) => {
    const before = towards(corner, loop.at(i - 1)!, radius);
    const after = towards(corner, loop[(i + 1) % loop.length]!, radius);
    return Array.from({ length: steps + 1 }, (_, step) => {
      const t = step / steps;
      return mix(mix(before, corner, t), mix(corner, after, t), t); // a quadratic curve
    });
  });
}

/** The point that far along the way, at most at its middle: neighbouring curves never overlap. */
function towards(from: Vector3, to: Vector3, distance: number): Vector3 {
  const whole = Math.hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]);
  return mix(from, to, whole > 0 ? Math.min(distance / whole, 0.5) : 0);
}

function mix(a: Vector3, b: Vector3, t: number): Vector3 {
  return [a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t, a[2] + (b[2] - a[2]) * t];
}

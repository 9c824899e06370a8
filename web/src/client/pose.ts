/** x, y, z in metres; right-handed, y up. */
export type Vector3 = readonly [x: number, y: number, z: number];

/** x, y, z, w: the real part last. */
export type Quaternion = readonly [x: number, y: number, z: number, w: number];

/** Sixteen numbers, column-major: element 4c + r is column c, row r. WebGL and three.js take it as it is. */
export type Matrix4 = number[];

/** Where something is in the world: a rotation, then a translation. */
export class Pose {
  /**
   * @param position metres, in the world frame
   * @param orientation a unit quaternion: local axes to world axes
   */
  constructor(
    readonly position: Vector3,
    readonly orientation: Quaternion,
  ) {}

  /** Local to world. For a camera this is the camera-to-world matrix; it looks along its own -Z. */
  get matrix(): Matrix4 {
    const [x, y, z] = this.position;
    const [xAxis, yAxis, zAxis] = axes(this.orientation);
    return [...xAxis, 0, ...yAxis, 0, ...zAxis, 0, x, y, z, 1];
  }

  /** World to local. For a camera this is the view matrix. */
  get inverse(): Matrix4 {
    const p = this.position;
    const [x, y, z] = axes(this.orientation);
    return [x[0], y[0], z[0], 0, x[1], y[1], z[1], 0, x[2], y[2], z[2], 0, -dot(x, p), -dot(y, p), -dot(z, p), 1];
  }
}

/** The camera's pose at one frame. */
export class CameraPose extends Pose {
  /** @param timestamp the frame's time as the native side sends it: thousands of seconds, single precision */
  constructor(
    position: Vector3,
    orientation: Quaternion,
    readonly timestamp: number,
  ) {
    super(position, orientation);
  }

  /** Seconds since the session began, to about a hundredth of a millisecond in the first minutes. */
  get seconds(): number {
    return this.timestamp * 1000;
  }
}

function axes([x, y, z, w]: Quaternion): [Vector3, Vector3, Vector3] {
  return [
    [1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)],
    [2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)],
    [2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)],
  ];
}

function dot(a: Vector3, b: Vector3): number {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

import type { Pose, Vector3 } from './pose.js';

/** A flat surface that the tracker found. A changed plane is a new object; the old one is left as it was. */
export interface Plane {
  /** The same for the plane's whole life. */
  readonly id: string;
  /** In the world. The plane lies in the pose's own x and z; y is its normal. */
  readonly pose: Pose;
  /** Metres along the pose's x. */
  readonly width: number;
  /** Metres along the pose's z. */
  readonly height: number;
  /** The exact shape; sent only while the feature flag "planegeometry" is set. */
  readonly geometry?: PlaneGeometry;
}

/** Triangles, in metres, in the frame of the plane's pose. */
export interface PlaneGeometry {
  readonly vertices: readonly Vector3[];
  /** Three a triangle, each a position in `vertices`. */
  readonly indices: readonly number[];
}

/** A printed picture that the tracker recognised. */
export interface Trigger {
  /** The trigger's id on the server. */
  readonly id: string;
  /** In the world. The picture lies in the pose's own x and z; y points out of it. */
  readonly pose: Pose;
  /** Metres along the pose's x. */
  readonly width: number;
  /** Metres along the pose's z. */
  readonly height: number;
}

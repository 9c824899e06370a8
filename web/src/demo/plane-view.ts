import {
  BufferGeometry,
  DoubleSide,
  Float32BufferAttribute,
  Group,
  Mesh,
  MeshBasicMaterial,
  ShapeUtils,
  Vector2,
} from 'three';
import { Line2 } from 'three/examples/jsm/lines/Line2.js';
import { LineGeometry } from 'three/examples/jsm/lines/LineGeometry.js';
import { LineMaterial } from 'three/examples/jsm/lines/LineMaterial.js';
import { planeOutline, type Plane, type Vector3 } from '../client/index.js';
import { rounded } from './rounded.js';
import { facesUp } from './table.js';

/** Horizontal surfaces are mint, walls are violet. */
const horizontal = look(0x2ee6b6);
const vertical = look(0xa48bff);

/** Metres. */
const cornerRadius = 0.05;

/** Hides what is behind the surface without being seen itself. Pushed back a little, so that its own outline wins. */
const screen = new MeshBasicMaterial({
  colorWrite: false,
  side: DoubleSide,
  polygonOffset: true,
  polygonOffsetFactor: 8, // enough for half the width of a line, on a surface seen at a low angle
  polygonOffsetUnits: 8,
});

function look(color: number) {
  return {
    line: new LineMaterial({ color, linewidth: 3 }),
    fill: new MeshBasicMaterial({ color, transparent: true, opacity: 0.045, depthWrite: false, side: DoubleSide }),
  };
}

/** One plane: its outline, a faint fill, and a screen that hides what lies behind it. */
export class PlaneView extends Group {
  constructor(plane: Plane) {
    super();
    const { line, fill } = isHorizontal(plane) ? horizontal : vertical;
    const loops = planeOutline(plane);
    const surface = surfaceOf(plane, loops);
    const hiding = new Mesh(surface, screen);
    hiding.renderOrder = -1;
    const tint = new Mesh(surface, fill);
    tint.renderOrder = 1;
    this.add(hiding, tint, ...loops.map((loop) => outline(loop, line)));
    this.matrixAutoUpdate = false;
    this.matrix.fromArray(plane.pose.matrix);
  }

  dispose(): void {
    for (const child of this.children) (child as Mesh).geometry.dispose();
  }
}

function isHorizontal(plane: Plane): boolean {
  return facesUp(plane) || plane.pose.matrix[5]! < -0.9;
}

function outline(loop: Vector3[], material: LineMaterial): Line2 {
  const corners = rounded(loop, cornerRadius);
  const geometry = new LineGeometry().setPositions([...corners, corners[0]!].flat());
  return new Line2(geometry, material);
}

function surfaceOf(plane: Plane, loops: Vector3[][]): BufferGeometry {
  const { vertices, indices } = plane.geometry ?? triangulate(loops[0]!);
  const geometry = new BufferGeometry();
  geometry.setAttribute('position', new Float32BufferAttribute(vertices.flat(), 3));
  return geometry.setIndex([...indices]);
}

function triangulate(loop: Vector3[]) {
  const flat = loop.map(([x, , z]) => new Vector2(x, z));
  return { vertices: loop, indices: ShapeUtils.triangulateShape(flat, []).flat() };
}

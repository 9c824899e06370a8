import {
  BoxGeometry,
  CylinderGeometry,
  Group,
  InstancedMesh,
  Matrix4,
  Mesh,
  MeshBasicMaterial,
  MeshStandardMaterial,
  Quaternion,
  SphereGeometry,
  Vector3,
} from 'three';
import { contactShadow } from './contact-shadow.js';

/** Metres. */
const side = 0.2;
const edgeRadius = 0.005;

/** A wireframe cube that stands on its group's origin, y up, with its shadow. */
export function makeCube(): Group {
  const group = new Group();
  const body = new Group();
  body.add(edges(), corners(), faces());
  body.position.y = side / 2 + edgeRadius;
  group.add(contactShadow(side), body);
  return group;
}

const paint = new MeshStandardMaterial({ color: 0xff6433, roughness: 0.45 });
const signs = [-1, 1];
const half = side / 2;

function edges(): InstancedMesh {
  const mesh = new InstancedMesh(new CylinderGeometry(edgeRadius, edgeRadius, side, 14, 1, true), paint, 12);
  const along = [new Vector3(1, 0, 0), new Vector3(0, 1, 0), new Vector3(0, 0, 1)];
  const cylinderAxis = new Vector3(0, 1, 0);
  let count = 0;
  along.forEach((axis, a) => {
    const turn = new Quaternion().setFromUnitVectors(cylinderAxis, axis);
    for (const s of signs) {
      for (const t of signs) {
        const centre = new Vector3().setComponent((a + 1) % 3, s * half).setComponent((a + 2) % 3, t * half);
        mesh.setMatrixAt(count++, new Matrix4().compose(centre, turn, new Vector3(1, 1, 1)));
      }
    }
  });
  return mesh;
}

function corners(): InstancedMesh {
  const mesh = new InstancedMesh(new SphereGeometry(edgeRadius, 16, 12), paint, 8);
  let count = 0;
  for (const x of signs) {
    for (const y of signs) {
      for (const z of signs) mesh.setMatrixAt(count++, new Matrix4().setPosition(x * half, y * half, z * half));
    }
  }
  return mesh;
}

/** A breath of colour, so that the cube reads as a body. */
function faces(): Mesh {
  const glass = new MeshBasicMaterial({ color: 0xff8a5c, transparent: true, opacity: 0.1, depthWrite: false });
  const mesh = new Mesh(new BoxGeometry(side, side, side), glass);
  mesh.renderOrder = 3;
  return mesh;
}

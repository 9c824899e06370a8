import {
  DirectionalLight,
  Group,
  HemisphereLight,
  PerspectiveCamera,
  Scene,
  WebGLRenderer,
  type Object3D,
} from 'three';
import type { CameraPose, Plane, Projection } from '../client/index.js';
import { makeCube } from './cube.js';
import { PlaneView } from './plane-view.js';
import { middleOf } from './table.js';

/** Metres. */
const depthRange = { near: 0.02, far: 100 };

/** A little turned, so that two of its sides are seen. */
const cubeTurn = 0.55;

/** The 3D content over the camera picture. */
export class Stage {
  readonly #renderer: WebGLRenderer;
  readonly #scene = new Scene();
  readonly #camera = new PerspectiveCamera();
  readonly #planes = new Map<string, PlaneView>();
  readonly #cube = new Group();

  constructor(canvas: HTMLCanvasElement) {
    this.#renderer = new WebGLRenderer({ canvas, alpha: true, antialias: true });
    this.#renderer.setClearColor(0, 0);
    this.#camera.matrixAutoUpdate = false;
    const sun = new DirectionalLight(0xffffff, 1.6);
    sun.position.set(0.6, 1, 0.4);
    this.#scene.add(new HemisphereLight(0xffffff, 0xb08a70, 2.1), sun, this.#cube);
    this.#cube.add(makeCube());
    this.#cube.visible = false;
    this.#cube.matrixAutoUpdate = false;
  }

  /** @param ratio device pixels a CSS pixel */
  resize(width: number, height: number, ratio: number): void {
    this.#renderer.setPixelRatio(Math.min(ratio, 2));
    this.#renderer.setSize(width, height, false);
  }

  putPlane(plane: Plane): void {
    this.removePlane(plane.id);
    const view = new PlaneView(plane);
    this.#planes.set(plane.id, view);
    this.#scene.add(view);
  }

  removePlane(id: string): void {
    const view = this.#planes.get(id);
    if (!view) return;
    this.#planes.delete(id);
    this.#scene.remove(view);
    view.dispose();
  }

  /** Takes away everything that stood in a world that is gone. */
  clear(): void {
    for (const id of [...this.#planes.keys()]) this.removePlane(id);
    this.#cube.visible = false;
  }

  /** Puts the cube on the middle of the plane; from then on it does not follow the plane. */
  standCubeOn(plane: Plane): void {
    this.#cube.matrix.fromArray(plane.pose.matrix);
    const inner: Object3D = this.#cube.children[0]!;
    inner.position.set(...middleOf(plane));
    inner.rotation.y = cubeTurn;
    this.#cube.visible = true;
  }

  /** @returns false while the drawing context is lost; it comes back by itself */
  render(pose: CameraPose, projection: Projection): boolean {
    const camera = this.#camera;
    camera.matrix.fromArray(pose.matrix);
    camera.projectionMatrix.fromArray(projection.matrix(depthRange.near, depthRange.far));
    camera.projectionMatrixInverse.copy(camera.projectionMatrix).invert();
    camera.updateMatrixWorld(true);
    this.#renderer.render(this.#scene, camera);
    return !this.#renderer.getContext().isContextLost();
  }
}

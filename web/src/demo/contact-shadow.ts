import { DoubleSide, Mesh, PlaneGeometry, ShaderMaterial } from 'three';

const vertexShader = /* glsl */ `
  varying vec2 at;
  uniform float extent;
  void main() {
    at = position.xy * extent;
    gl_Position = projectionMatrix * modelViewMatrix * vec4(position.xy * extent, 0.0, 1.0);
  }`;

// Wide and faint where the body keeps the room's light away, tight and dark where its four lower edges touch the ground.
const fragmentShader = /* glsl */ `
  varying vec2 at;
  uniform float half_side;
  void main() {
    vec2 inside = smoothstep(-0.09, 0.075, at + half_side) * smoothstep(-0.09, 0.075, half_side - at);
    vec2 beyond = abs(at) - half_side;
    float to_edge = abs(length(max(beyond, 0.0)) + min(max(beyond.x, beyond.y), 0.0));
    float touch = 1.0 - smoothstep(0.0, 0.024, to_edge);
    float darkness = 1.0 - (1.0 - 0.48 * inside.x * inside.y) * (1.0 - 0.42 * touch * touch);
    gl_FragColor = vec4(0.02, 0.02, 0.04, darkness);
  }`;

/** A soft shadow in the ground's x and z, for a box of the given side in metres that stands at the origin. */
export function contactShadow(side: number): Mesh {
  const extent = side * 2.2;
  const material = new ShaderMaterial({
    vertexShader,
    fragmentShader,
    uniforms: { half_side: { value: side / 2 }, extent: { value: extent } },
    transparent: true,
    depthWrite: false,
    side: DoubleSide,
    polygonOffset: true,
    polygonOffsetFactor: -1,
    polygonOffsetUnits: -4,
  });
  const shadow = new Mesh(new PlaneGeometry(1, 1), material);
  shadow.rotation.x = -Math.PI / 2;
  shadow.renderOrder = 2;
  return shadow;
}

import type { BufferPoint } from './project.js';

/** A line with round ends; a disc when both ends are the same. */
export interface Stroke {
  from: BufferPoint;
  to: BufferPoint;
  /** Of the round ends, buffer pixels. */
  radius: number;
  /** Red, green, blue, 0 to 1. */
  colour: readonly [number, number, number];
}

const vertexShader = /* glsl */ `#version 300 es
  uniform vec2 size, from, to;
  uniform float radius;
  in vec2 corner;
  void main() {
    float reach = radius + 1.0; // a pixel more, for the soft edge
    vec2 at = mix(min(from, to) - reach, max(from, to) + reach, corner);
    gl_Position = vec4(at / size * 2.0 - 1.0, 0.0, 1.0);
  }`;

// gl_FragCoord is at the middle of a pixel, as the ends are: the distance is exact, wherever in a pixel they fall.
const fragmentShader = /* glsl */ `#version 300 es
  precision highp float;
  uniform vec2 from, to;
  uniform float radius;
  uniform vec3 ink;
  out vec4 colour;
  void main() {
    vec2 along = to - from, here = gl_FragCoord.xy - from;
    float share = clamp(dot(here, along) / max(dot(along, along), 1e-6), 0.0, 1.0);
    float covered = clamp(radius + 0.5 - length(here - share * along), 0.0, 1.0);
    colour = vec4(ink, 1.0) * covered;
  }`;

const uniforms = ['size', 'from', 'to', 'radius', 'ink'] as const;
type Locations = Record<(typeof uniforms)[number], WebGLUniformLocation | null>;

/** Draws strokes over a transparent canvas. */
export class Strokes {
  readonly #gl: WebGL2RenderingContext;
  #locations!: Locations;

  /** @throws Error when the browser has no WebGL 2 */
  constructor(canvas: HTMLCanvasElement) {
    // Kept after it was shown: whoever reads the canvas later finds the last frame and not an empty one.
    const gl = canvas.getContext('webgl2', {
      alpha: true,
      antialias: false,
      depth: false,
      preserveDrawingBuffer: true,
    });
    if (!gl) throw new Error('WebGL 2 is needed');
    this.#gl = gl;
    this.prepare();
  }

  /** Makes what lives on the GPU; to be called again when a lost context is back. */
  prepare(): void {
    const gl = this.#gl;
    const program = gl.createProgram()!;
    for (const [type, source] of [
      [gl.VERTEX_SHADER, vertexShader],
      [gl.FRAGMENT_SHADER, fragmentShader],
    ] as const) {
      const shader = gl.createShader(type)!;
      gl.shaderSource(shader, source);
      gl.compileShader(shader);
      gl.attachShader(program, shader);
    }
    gl.bindAttribLocation(program, 0, 'corner');
    gl.linkProgram(program);
    gl.useProgram(program);
    gl.bindBuffer(gl.ARRAY_BUFFER, gl.createBuffer());
    gl.bufferData(gl.ARRAY_BUFFER, new Float32Array([0, 0, 1, 0, 0, 1, 1, 1]), gl.STATIC_DRAW);
    gl.enableVertexAttribArray(0);
    gl.vertexAttribPointer(0, 2, gl.FLOAT, false, 0, 0);
    gl.enable(gl.BLEND);
    gl.blendFunc(gl.ONE, gl.ONE_MINUS_SRC_ALPHA); // colours are premultiplied
    const locations = uniforms.map((name) => [name, gl.getUniformLocation(program, name)] as const);
    this.#locations = Object.fromEntries(locations) as Locations;
  }

  /**
   * Replaces what was drawn before; later strokes lie over earlier ones.
   *
   * @returns false while the drawing context is lost
   */
  draw(strokes: readonly Stroke[]): boolean {
    const gl = this.#gl;
    const at = this.#locations;
    const { width, height } = gl.canvas;
    gl.viewport(0, 0, width, height);
    gl.clearColor(0, 0, 0, 0);
    gl.clear(gl.COLOR_BUFFER_BIT);
    gl.uniform2f(at.size, width, height);
    for (const { from, to, radius, colour } of strokes) {
      gl.uniform2f(at.from, ...from);
      gl.uniform2f(at.to, ...to);
      gl.uniform1f(at.radius, radius);
      gl.uniform3f(at.ink, ...colour);
      gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
    }
    gl.flush();
    return !gl.isContextLost();
  }
}

import type { BufferPoint } from './project.js';

const vertexShader = /* glsl */ `#version 300 es
  uniform vec2 size, centre;
  uniform float radius;
  in vec2 corner;
  void main() {
    vec2 at = centre + corner * (radius + 1.0); // a pixel more, for the soft edge
    gl_Position = vec4(at / size * 2.0 - 1.0, 0.0, 1.0);
  }`;

// gl_FragCoord is at the middle of a pixel, as the centre is: the distance is exact, wherever in a pixel the centre falls.
const fragmentShader = /* glsl */ `#version 300 es
  precision highp float;
  uniform vec2 centre;
  uniform float radius;
  out vec4 colour;
  void main() {
    float covered = clamp(radius + 0.5 - distance(gl_FragCoord.xy, centre), 0.0, 1.0);
    colour = vec4(1.0, 0.0, 1.0, 1.0) * covered;
  }`;

/** Draws round magenta spots over a transparent canvas. */
export class Discs {
  readonly #gl: WebGL2RenderingContext;
  #locations!: {
    size: WebGLUniformLocation | null;
    centre: WebGLUniformLocation | null;
    radius: WebGLUniformLocation | null;
  };

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
    gl.bufferData(gl.ARRAY_BUFFER, new Float32Array([-1, -1, 1, -1, -1, 1, 1, 1]), gl.STATIC_DRAW);
    gl.enableVertexAttribArray(0);
    gl.vertexAttribPointer(0, 2, gl.FLOAT, false, 0, 0);
    gl.enable(gl.BLEND);
    gl.blendFunc(gl.ONE, gl.ONE_MINUS_SRC_ALPHA); // colours are premultiplied
    const location = (name: string) => gl.getUniformLocation(program, name);
    this.#locations = { size: location('size'), centre: location('centre'), radius: location('radius') };
  }

  /**
   * Replaces what was drawn before.
   *
   * @param radius buffer pixels
   * @returns false while the drawing context is lost
   */
  draw(centres: readonly BufferPoint[], radius: number): boolean {
    const gl = this.#gl;
    const { width, height } = gl.canvas;
    gl.viewport(0, 0, width, height);
    gl.clearColor(0, 0, 0, 0);
    gl.clear(gl.COLOR_BUFFER_BIT);
    gl.uniform2f(this.#locations.size, width, height);
    gl.uniform1f(this.#locations.radius, radius);
    for (const [x, y] of centres) {
      gl.uniform2f(this.#locations.centre, x, y);
      gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
    }
    gl.flush();
    return !gl.isContextLost();
  }
}

import type { BufferPoint } from './project.js';

const vertexShader = /* glsl */ `#version 300 es
  uniform vec2 size, centre;
  uniform float radius;
  in vec2 corner;
  void main() {
    vec2 at = centre + (radius + 1.0) * corner; // a pixel more, for the soft edge
    gl_Position = vec4(at / size * 2.0 - 1.0, 0.0, 1.0);
  }`;

// gl_FragCoord is at the middle of a pixel, as the centre is: the distance is exact, wherever in a pixel it falls.
const fragmentShader = /* glsl */ `#version 300 es
  precision highp float;
  uniform vec2 centre;
  uniform float radius;
  out vec4 colour;
  void main() {
    colour = vec4(1.0, 0.0, 1.0, 1.0) * clamp(radius + 0.5 - length(gl_FragCoord.xy - centre), 0.0, 1.0);
  }`;

/** @returns a function that draws magenta discs, their radius in buffer pixels, in place of what was drawn before */
export function discsOn(canvas: HTMLCanvasElement): (centres: readonly BufferPoint[], radius: number) => void {
  // Kept after it was shown: whoever reads the canvas later finds the last frame and not an empty one.
  const options = { alpha: true, antialias: false, depth: false, preserveDrawingBuffer: true };
  const gl = canvas.getContext('webgl2', options) as WebGL2RenderingContext;
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
  return (centres, radius) => {
    gl.viewport(0, 0, canvas.width, canvas.height);
    gl.clear(gl.COLOR_BUFFER_BIT);
    gl.uniform2f(gl.getUniformLocation(program, 'size'), canvas.width, canvas.height);
    gl.uniform1f(gl.getUniformLocation(program, 'radius'), radius);
    for (const centre of centres) {
      gl.uniform2f(gl.getUniformLocation(program, 'centre'), ...centre);
      gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
    }
    gl.flush();
  };
}

// The shader library "default": functions that a pipeline names, in the common part of GLSL 1.50 and GLSL ES 3.00.
// A pipeline's program is the language's version line, one of VERTEX and FRAGMENT, this text, and a main()
// that calls the named function. Vertex attribute N is `attributeN`, fragment texture N is `textureN`.

#ifdef VERTEX

in vec2 attribute0; // position, -1..1, y up
in vec2 attribute1; // texture coordinate, 0..1, y down
out vec2 textureCoordinate;

void capturedImageVertexTransform() {
    gl_Position = vec4(attribute0, 0.0, 1.0);
    textureCoordinate = attribute1;
}

#endif

#ifdef FRAGMENT

in vec2 textureCoordinate;
out vec4 color;
uniform sampler2D texture1; // luma
uniform sampler2D texture2; // Cb, Cr

// Full-range BT.601. With Cb and Cr centred on 128/255:
//     R = Y               + 1.402    Cr
//     G = Y - 0.344136 Cb - 0.714136 Cr
//     B = Y + 1.772    Cb
void capturedImageFragmentShader() {
    float luma = texture(texture1, textureCoordinate).r;
    vec2 chroma = texture(texture2, textureCoordinate).rg - 128.0 / 255.0;
    color = vec4(luma + 1.402 * chroma.y,
                 luma - 0.344136 * chroma.x - 0.714136 * chroma.y,
                 luma + 1.772 * chroma.x, 1.0);
}

#endif

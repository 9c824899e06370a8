#include "session/Nv12Pass.h"

#include <epoxy/gl.h>

#include <string>

namespace kestrin::session {

namespace {

const std::string kEverywhere = R"(
void main() {
    vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 4.0 - 1.0;
    gl_Position = vec4(corner, 0.0, 1.0);
})";

const std::string kFetch = R"(
uniform sampler2D picture;
uniform ivec2 size;
uniform int firstRow;
out vec4 bytes;
vec3 at(ivec2 pixel) { return texelFetch(picture, min(pixel, size - 1), 0).rgb; }
)";

/// Each fragment holds four samples of a row.
const std::string kLuma = kFetch + R"(
float luma(ivec2 pixel) { return dot(at(pixel), vec3(0.299, 0.587, 0.114)); }
void main() {
    ivec2 p = ivec2(gl_FragCoord.xy) * ivec2(4, 1);
    bytes = vec4(luma(p), luma(p + ivec2(1, 0)), luma(p + ivec2(2, 0)), luma(p + ivec2(3, 0)));
})";

/// Each fragment holds two pairs of a row.
const std::string kChroma = kFetch + R"(
vec2 chroma(ivec2 p) {
    vec3 c = 0.25 * (at(p) + at(p + ivec2(1, 0)) + at(p + ivec2(0, 1)) + at(p + ivec2(1, 1)));
    float y = dot(c, vec3(0.299, 0.587, 0.114));
    return vec2(c.b - y, c.r - y) / vec2(1.772, 1.402) + 128.0 / 255.0;
}
void main() {
    ivec2 p = (ivec2(gl_FragCoord.xy) - ivec2(0, firstRow)) * ivec2(4, 2);
    bytes = vec4(chroma(p), chroma(p + ivec2(2, 0)));
})";

} // namespace

Nv12Pass::Nv12Pass(const OffscreenContext& context, int width, int height)
    : m_width(width), m_height(height), m_luma(context.makeProgram(kEverywhere, kLuma)),
      m_chroma(context.makeProgram(kEverywhere, kChroma)) {
    const Nv12Buffer layout(width, height);
    GLuint target = 0;
    glGenRenderbuffers(1, &target);
    glBindRenderbuffer(GL_RENDERBUFFER, target);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, layout.stride() / 4, layout.rows());
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, target);
}

void Nv12Pass::read(unsigned texture, Nv12Buffer& buffer) const {
    const int columns = buffer.stride() / 4, rows = buffer.rows();
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, columns, rows);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glEnable(GL_SCISSOR_TEST);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, texture);
    const auto draw = [&](unsigned program, int first, int count) {
        glUseProgram(program);
        glUniform2i(glGetUniformLocation(program, "size"), m_width, m_height);
        glUniform1i(glGetUniformLocation(program, "firstRow"), first);
        glScissor(0, first, columns, count);
        glDrawArrays(GL_TRIANGLES, 0, 3);
    };
    draw(m_luma, 0, m_height);
    draw(m_chroma, m_height, rows - m_height);
    glDisable(GL_SCISSOR_TEST);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, columns, rows, GL_RGBA, GL_UNSIGNED_BYTE, buffer.bytes());
}

} // namespace kestrin::session

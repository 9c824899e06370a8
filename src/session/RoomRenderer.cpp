#include "session/RoomRenderer.h"

#include <epoxy/gl.h>

#include "session/Texture.h"

#include <array>
#include <cstddef>
#include <future>

namespace kestrin::session {

namespace {

constexpr double kNear = 0.05, kFar = 100; // metres

const std::string kSurfaceVertex = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec2 textureAt;
layout(location = 2) in vec2 lightTexel;
uniform mat4 worldToClip;
uniform sampler2D light;
out vec2 uv;
out vec2 lightUv;
void main() {
    uv = textureAt;
    lightUv = lightTexel / vec2(textureSize(light, 0));
    gl_Position = worldToClip * vec4(position, 1.0);
})";

const std::string kSurfaceFragment = R"(
in vec2 uv;
in vec2 lightUv;
uniform sampler2D paint;
uniform sampler2D light;
out vec4 color;
void main() {
    color = vec4(texture(paint, uv).rgb * texture(light, lightUv).rgb * 2.0, 1.0);
})";

const std::string kMarkVertex = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec2 offset;
layout(location = 2) in float radius;
uniform mat4 worldToClip;
out vec2 place;
out float edge;
void main() {
    place = offset;
    edge = radius;
    gl_Position = worldToClip * vec4(position, 1.0);
})";

/// The share of a pixel that the disc covers follows from its distance to the edge, measured in pixels.
const std::string kMarkFragment = R"(
in vec2 place;
in float edge;
out vec4 color;
void main() {
    float beyond = length(place) - edge;
    float pixel = length(vec2(dFdx(beyond), dFdy(beyond)));
    color = vec4(vec3(clamp(0.5 + beyond / pixel, 0.0, 1.0)), 1.0);
})";

/// Rows of the target are rows of the picture, the top one first: y is turned round.
Matrix clipOf(const CameraModel& model) {
    const platform::Intrinsics& k = model.intrinsics;
    const double w = model.width, h = model.height;
    return {{{{float(2 * k.fx / w), 0, 0, 0},
              {0, float(-2 * k.fy / h), 0, 0},
              {float(1 - 2 * k.cx / w), float(1 - 2 * k.cy / h), float((kFar + kNear) / (kNear - kFar)), -1},
              {0, 0, float(2 * kFar * kNear / (kNear - kFar)), 0}}}};
}

void setFilter(GLint minify, GLint wrap) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minify);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
}

void setPixels(int level, int width, int height, const std::uint8_t* pixels) {
    glTexImage2D(GL_TEXTURE_2D, level, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

GLuint makeTexture() {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    return texture;
}

/// The smaller levels are made here: a software driver takes twenty times as long.
GLuint makeMippedTexture(platform::Image image) {
    const GLuint texture = makeTexture();
    for (int level = 0;; ++level) {
        setPixels(level, image.pixelWidth(), image.pixelHeight(), image.pixels().data());
        if (image.pixelWidth() == 1 && image.pixelHeight() == 1)
            return texture;
        image = halved(image);
    }
}

/// A vertex array over records of floats; `sizes` are those of the attributes, one after the other.
template <typename Vertex>
GLuint makeVertexArray(const std::vector<Vertex>& vertices, const std::array<int, 3>& sizes) {
    GLuint array = 0, buffer = 0;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(vertices.size() * sizeof(Vertex)), vertices.data(),
                 GL_STATIC_DRAW);
    std::size_t offset = 0;
    for (GLuint i = 0; i < sizes.size(); ++i) {
        glEnableVertexAttribArray(i);
        glVertexAttribPointer(i, sizes[i], GL_FLOAT, GL_FALSE, sizeof(Vertex),
                              reinterpret_cast<void*>(offset));
        offset += std::size_t(sizes[i]) * sizeof(float);
    }
    return array;
}

void useProgram(GLuint program, const Matrix& worldToClip) {
    glUseProgram(program);
    glUniformMatrix4fv(glGetUniformLocation(program, "worldToClip"), 1, GL_FALSE, &worldToClip[0].x);
}

} // namespace

std::variant<std::unique_ptr<RoomRenderer>, std::string> RoomRenderer::make(const Room& room,
                                                                            const CameraModel& model) {
    RoomMesh mesh(room);
    const auto light = std::async(std::launch::async, [&mesh] { mesh.light.bake(); });
    auto context = OffscreenContext::make();
    if (auto* error = std::get_if<std::string>(&context))
        return std::move(*error);
    std::unique_ptr<RoomRenderer> renderer(new RoomRenderer(std::move(std::get<0>(context)), model));
    renderer->makeTarget();
    if (!renderer->isValid())
        return "the GL driver refuses the shaders or the size of the picture";
    renderer->upload(mesh);
    light.wait();
    renderer->uploadLight(mesh.light);
    return renderer;
}

RoomRenderer::RoomRenderer(std::unique_ptr<OffscreenContext> context, const CameraModel& model)
    : m_context(std::move(context)), m_model(model), m_pass(*m_context, model.width, model.height),
      m_surfaceProgram(m_context->makeProgram(kSurfaceVertex, kSurfaceFragment)),
      m_markProgram(m_context->makeProgram(kMarkVertex, kMarkFragment)) {}

bool RoomRenderer::isValid() const {
    return m_surfaceProgram != 0 && m_markProgram != 0 && m_pass.isValid() &&
           glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

void RoomRenderer::makeTarget() {
    m_target = makeTexture();
    setPixels(0, m_model.width, m_model.height, nullptr);
    setFilter(GL_NEAREST, GL_CLAMP_TO_EDGE);
    GLuint depth = 0;
    glGenRenderbuffers(1, &depth);
    glBindRenderbuffer(GL_RENDERBUFFER, depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, m_model.width, m_model.height);
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_target, 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth);
}

void RoomRenderer::upload(const RoomMesh& mesh) {
    m_surfaces = uploadTextures(mesh.surfaces);
    m_pictures = uploadTextures(mesh.pictures);
    m_surfaceVertices = makeVertexArray(mesh.vertices, {3, 2, 2});
    m_markVertices = makeVertexArray(mesh.marks, {3, 2, 1});
    m_markCount = int(mesh.marks.size());
}

void RoomRenderer::uploadLight(const LightMap& light) {
    m_light = makeTexture();
    setPixels(0, LightMap::kWidth, light.height(), light.texels().data());
    setFilter(GL_LINEAR, GL_CLAMP_TO_EDGE);
}

std::vector<RoomRenderer::Drawable>
RoomRenderer::uploadTextures(const std::vector<RoomMesh::Batch>& batches) {
    std::vector<Drawable> drawables;
    for (const RoomMesh::Batch& batch : batches) {
        drawables.push_back({makeMippedTexture(textureImage(batch.texture)), batch.first, batch.count});
        setFilter(GL_LINEAR_MIPMAP_NEAREST, batch.repeats ? GL_REPEAT : GL_CLAMP_TO_EDGE);
    }
    return drawables;
}

void RoomRenderer::render(const Matrix& sensorPose, Nv12Buffer& picture) {
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, m_model.width, m_model.height);
    drawScene(clipOf(m_model) * rigidInverse(sensorPose));
    m_pass.read(m_target, picture);
}

void RoomRenderer::drawScene(const Matrix& worldToClip) const {
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_CULL_FACE);
    glFrontFace(GL_CW); // the picture is drawn upside down
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    useProgram(m_surfaceProgram, worldToClip);
    glUniform1i(glGetUniformLocation(m_surfaceProgram, "light"), 1);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, m_light);
    glActiveTexture(GL_TEXTURE0);
    glBindVertexArray(m_surfaceVertices);
    const auto draw = [](const std::vector<Drawable>& drawables) {
        for (const Drawable& drawable : drawables) {
            glBindTexture(GL_TEXTURE_2D, drawable.texture);
            glDrawArrays(GL_TRIANGLES, drawable.first, drawable.count);
        }
    };
    draw(m_surfaces);
    // What is painted on a surface is brought a little nearer.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(-1, -4);
    draw(m_pictures);
    glPolygonOffset(-2, -8);
    useProgram(m_markProgram, worldToClip);
    glBindVertexArray(m_markVertices);
    glDrawArrays(GL_TRIANGLES, 0, m_markCount);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

} // namespace kestrin::session

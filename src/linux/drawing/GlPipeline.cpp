#include "linux/drawing/GlPipeline.h"

#include "linux/drawing/GlDebug.h"

#include <cstdint>

namespace kestrin::gtk {

namespace {

constexpr int kTextureUnits = 8;

/// GL's first row is the lowest, the toolkit's the topmost.
constexpr const char* kTurnOver = " gl_Position.y = -gl_Position.y;";

GLuint compile(GLenum stage, const std::string& text) {
    const GLuint shader = glCreateShader(stage);
    const char* source = text.c_str();
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

/// What the compiler says of a program that does not link, its shaders included.
std::string complaint(GLuint program) {
    std::string result;
    GLuint shaders[2] = {};
    GLsizei count = 0;
    glGetAttachedShaders(program, 2, &count, shaders);
    char text[512] = "";
    for (GLsizei i = 0; i < count; ++i) {
        glGetShaderInfoLog(shaders[i], sizeof text, nullptr, text);
        result += text;
    }
    glGetProgramInfoLog(program, sizeof text, nullptr, text);
    return result + text;
}

} // namespace

std::string GlPipeline::source(GLenum stage) const {
    const bool isVertex = stage == GL_VERTEX_SHADER;
    const char* version = epoxy_is_desktop_gl() ? "#version 150\n"
                                                : "#version 300 es\nprecision highp float;\n"
                                                  "precision highp sampler2D;\n";
    const std::string& function = isVertex ? m_descriptor.vertexFunction : m_descriptor.fragmentFunction;
    return std::string(version) + (isVertex ? "#define VERTEX\n" : "#define FRAGMENT\n") + m_library->text() +
           "\nvoid main() { " + function + "();" + (isVertex ? kTurnOver : "") + " }\n";
}

void GlPipeline::build(GLuint program) const {
    const GLuint shaders[] = {compile(GL_VERTEX_SHADER, source(GL_VERTEX_SHADER)),
                              compile(GL_FRAGMENT_SHADER, source(GL_FRAGMENT_SHADER))};
    for (const GLuint shader : shaders)
        glAttachShader(program, shader);
    for (GLuint i = 0; i < m_descriptor.attributes.size(); ++i)
        glBindAttribLocation(program, i, ("attribute" + std::to_string(i)).c_str());
    glLinkProgram(program);

    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    m_works = linked == GL_TRUE;
    if (!m_works)
        m_log->write("Kestrin - The pipeline " + m_descriptor.label +
                     " does not compile: " + complaint(program));
    for (const GLuint shader : shaders)
        glDeleteShader(shader); // it lives as long as the program
}

bool GlPipeline::use(GlStore& store) const {
    const bool isNew = !m_program.belongsTo(store);
    if (isNew) {
        m_program = store.take(GlKind::program);
        m_layout = store.take(GlKind::vertexArray);
        build(m_program.id());
    }
    if (!m_works)
        return false;
    glUseProgram(m_program.id());
    glBindVertexArray(m_layout.id());
    if (!isNew)
        return true;
    labelGlObject(GL_PROGRAM, m_program.id(), m_descriptor.label);
    for (int unit = 0; unit < kTextureUnits; ++unit)
        glUniform1i(glGetUniformLocation(m_program.id(), ("texture" + std::to_string(unit)).c_str()), unit);
    return true;
}

void GlPipeline::layOut(int index, int offset) const {
    for (GLuint i = 0; i < m_descriptor.attributes.size(); ++i) {
        const platform::GpuVertexAttribute& attribute = m_descriptor.attributes[i];
        if (attribute.buffer != index)
            continue;
        const auto start = std::uintptr_t(offset + attribute.offset);
        glEnableVertexAttribArray(i);
        glVertexAttribPointer(i, 2, GL_FLOAT, GL_FALSE, m_descriptor.vertexStride,
                              reinterpret_cast<const void*>(start));
    }
}

} // namespace kestrin::gtk

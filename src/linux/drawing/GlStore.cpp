#include "linux/drawing/GlStore.h"

#include <algorithm>
#include <utility>

namespace kestrin::gtk {

namespace {

// Two planes of the pictures that can be in flight at once.
constexpr std::size_t kMostIdleTextures = 8;

GLuint generate(GlKind kind) {
    GLuint id = 0;
    switch (kind) {
    case GlKind::texture:
        glGenTextures(1, &id);
        break;
    case GlKind::buffer:
        glGenBuffers(1, &id);
        break;
    case GlKind::program:
        id = glCreateProgram();
        break;
    case GlKind::vertexArray:
        glGenVertexArrays(1, &id);
        break;
    }
    return id;
}

void destroy(GlKind kind, GLuint id) {
    switch (kind) {
    case GlKind::texture:
        glDeleteTextures(1, &id);
        break;
    case GlKind::buffer:
        glDeleteBuffers(1, &id);
        break;
    case GlKind::program:
        glDeleteProgram(id);
        break;
    case GlKind::vertexArray:
        glDeleteVertexArrays(1, &id);
        break;
    }
}

/// Storage without pixels, bound.
void shapeTexture(GLuint id, const TextureShape& shape) {
    const GLenum format = shape.internalFormat == GL_RG8  ? GL_RG
                          : shape.internalFormat == GL_R8 ? GL_RED
                                                          : GL_RGBA;
    glBindTexture(GL_TEXTURE_2D, id);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, shape.internalFormat, shape.width, shape.height, 0, format,
                 GL_UNSIGNED_BYTE, nullptr);
}

} // namespace

GlHandle::~GlHandle() {
    if (const auto store = m_store.lock())
        store->giveBack(m_kind, m_id);
}

GlHandle GlStore::take(GlKind kind) {
    const GLuint id = generate(kind);
    m_all[{kind, id}] = {};
    return {weak_from_this(), kind, id};
}

GlHandle GlStore::takeTexture(const TextureShape& shape) {
    const auto fits = [&](GLuint id) { return m_all.at({GlKind::texture, id}) == shape; };
    const auto idle = std::ranges::find_if(m_idleTextures, fits);
    if (idle != m_idleTextures.end()) {
        const GLuint id = *idle;
        m_idleTextures.erase(idle);
        return {weak_from_this(), GlKind::texture, id};
    }
    GlHandle made = take(GlKind::texture);
    m_all[{GlKind::texture, made.id()}] = shape;
    shapeTexture(made.id(), shape);
    return made;
}

void GlStore::giveBack(GlKind kind, GLuint id) {
    const std::lock_guard lock(m_mutex);
    m_returned.emplace_back(kind, id);
}

void GlStore::sweep() {
    std::vector<Key> returned;
    {
        const std::lock_guard lock(m_mutex);
        returned.swap(m_returned);
    }
    for (const Key& key : returned) {
        if (key.first == GlKind::texture)
            m_idleTextures.push_back(key.second);
        else
            erase(key);
    }
    while (m_idleTextures.size() > kMostIdleTextures) {
        erase({GlKind::texture, m_idleTextures.front()});
        m_idleTextures.erase(m_idleTextures.begin());
    }
}

void GlStore::erase(const Key& key) {
    destroy(key.first, key.second);
    m_all.erase(key);
}

void GlStore::close() {
    for (const auto& object : m_all)
        destroy(object.first.first, object.first.second);
    m_all.clear();
    m_idleTextures.clear();
}

} // namespace kestrin::gtk

#pragma once

#include <epoxy/gl.h>

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace kestrin::gtk {

enum class GlKind { texture, buffer, program, vertexArray };

struct TextureShape {
    GLint internalFormat = 0;
    int width = 0, height = 0;
    bool operator==(const TextureShape&) const = default;
};

class GlStore;

/// Owns one GL object of a drawing context. May be destroyed on any thread; the context's own thread then
/// deletes the object or uses it again.
class GlHandle {
  public:
    GlHandle() = default;
    GlHandle(std::weak_ptr<GlStore> store, GlKind kind, GLuint id)
        : m_store(std::move(store)), m_kind(kind), m_id(id) {}
    GlHandle(GlHandle&& other) noexcept { swap(other); }
    GlHandle& operator=(GlHandle&& other) noexcept {
        swap(other);
        return *this;
    }
    ~GlHandle();

    /// Whether the object exists in that context; an empty handle's does nowhere.
    bool belongsTo(const GlStore& store) const { return m_store.lock().get() == &store; }
    GLuint id() const { return m_id; }

  private:
    void swap(GlHandle& other) {
        m_store.swap(other.m_store);
        std::swap(m_kind, other.m_kind);
        std::swap(m_id, other.m_id);
    }

    std::weak_ptr<GlStore> m_store;
    GlKind m_kind{};
    GLuint m_id = 0;
};

/// The GL objects of one drawing context. Thread: drawing, with the context current, unless said otherwise.
class GlStore : public std::enable_shared_from_this<GlStore> {
  public:
    GlHandle take(GlKind kind);
    /// A texture with linear filtering, clamped to its edge; one that was given back if there is such a one.
    GlHandle takeTexture(const TextureShape& shape);
    /// Thread: any.
    void giveBack(GlKind kind, GLuint id);
    /// Deletes what was given back; a few textures are kept for further use.
    void sweep();
    /// Deletes everything; handles that are left do nothing any more.
    void close();

  private:
    using Key = std::pair<GlKind, GLuint>;

    void erase(const Key& key);

    std::map<Key, TextureShape> m_all;
    std::vector<GLuint> m_idleTextures;
    std::mutex m_mutex;
    std::vector<Key> m_returned; // guarded
};

} // namespace kestrin::gtk

#include "linux/drawing/GlDebug.h"

namespace kestrin::gtk {

namespace {

bool hasNames() {
    static const bool known = epoxy_gl_version() >= (epoxy_is_desktop_gl() ? 43 : 32);
    return known;
}

} // namespace

void labelGlObject(GLenum kind, GLuint id, const std::string& label) {
    if (hasNames() && !label.empty())
        glObjectLabel(kind, id, GLsizei(label.size()), label.data());
}

void pushGlGroup(const std::string& name) {
    if (hasNames())
        glPushDebugGroup(GL_DEBUG_SOURCE_APPLICATION, 0, GLsizei(name.size()), name.data());
}

void popGlGroup() {
    if (hasNames())
        glPopDebugGroup();
}

} // namespace kestrin::gtk

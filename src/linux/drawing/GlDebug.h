#pragma once

#include <epoxy/gl.h>

#include <string>

namespace kestrin::gtk {

// Names for graphics debuggers, where GL knows them. Thread: drawing.
void labelGlObject(GLenum kind, GLuint id, const std::string& label);
void pushGlGroup(const std::string& name);
void popGlGroup();

} // namespace kestrin::gtk

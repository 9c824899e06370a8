#pragma once

#include "platform/Gpu.h"

namespace kestrin::gtk {

/// The text of a shader library; how it is made up stands in share/shaders/default.glsl.
class GlLibrary final : public platform::GpuLibrary {
  public:
    explicit GlLibrary(std::string text) : m_text(std::move(text)) {}

    const std::string& text() const { return m_text; }
    bool hasFunction(const std::string& name) const {
        return m_text.find("void " + name + "(") != std::string::npos;
    }

  private:
    const std::string m_text;
};

} // namespace kestrin::gtk

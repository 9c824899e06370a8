#pragma once

#include <memory>
#include <string>
#include <variant>

namespace kestrin::session {

/// A GL context of its own that needs no display: OpenGL 3.3, else OpenGL ES 3. Current on the thread that
/// made it, where it must also end. Everything made in it ends with it.
class OffscreenContext {
  public:
    /// The context, or why there is none.
    static std::variant<std::unique_ptr<OffscreenContext>, std::string> make();
    ~OffscreenContext();
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;

    /// Links a program; its sources begin after the version line, which differs. Empty when the driver
    /// refuses.
    unsigned makeProgram(const std::string& vertex, const std::string& fragment) const;

  private:
    OffscreenContext(void* display, void* context, bool isEs);
    unsigned compile(unsigned kind, const std::string& source) const;

    void* m_display;
    void* m_context;
    bool m_isEs;
};

} // namespace kestrin::session

#include "session/OffscreenContext.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <array>

namespace kestrin::session {

namespace {

EGLContext makeContext(EGLDisplay display, EGLenum api, EGLint major, EGLint minor) {
    const std::array<EGLint, 5> attributes{EGL_CONTEXT_MAJOR_VERSION, major, EGL_CONTEXT_MINOR_VERSION, minor,
                                           EGL_NONE};
    if (!eglBindAPI(api))
        return EGL_NO_CONTEXT;
    return eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, attributes.data());
}

/// The display of the first GPU, or of its replacement in software; without devices the one without a
/// platform. A web engine in the same process opens that last one too and ends it when it likes, and with it
/// every context of others; nobody else opens the display of a device.
EGLDisplay findDisplay() {
    // epoxy ends the process when a function is missing, so the extensions are asked for first.
    const auto has = [](const char* extension) { return epoxy_has_egl_extension(EGL_NO_DISPLAY, extension); };
    if (!has("EGL_EXT_platform_base"))
        return EGL_NO_DISPLAY;
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (has("EGL_EXT_platform_device") && has("EGL_EXT_device_enumeration") &&
        eglQueryDevicesEXT(1, &device, &count) && count > 0)
        return eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, device, nullptr);
    if (has("EGL_MESA_platform_surfaceless"))
        return eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    return EGL_NO_DISPLAY;
}

/// The display is shared by the process and stays initialised: ending it would end the contexts of others.
std::variant<EGLDisplay, std::string> openDisplay() {
    if (!epoxy_has_egl())
        return "there is no EGL library";
    const EGLDisplay display = findDisplay();
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr))
        return "EGL cannot be initialised";
    if (!epoxy_has_egl_extension(display, "EGL_KHR_surfaceless_context") ||
        !epoxy_has_egl_extension(display, "EGL_KHR_no_config_context"))
        return "EGL has no surfaceless contexts";
    return display;
}

} // namespace

std::variant<std::unique_ptr<OffscreenContext>, std::string> OffscreenContext::make() {
    const auto opened = openDisplay();
    if (const auto* error = std::get_if<std::string>(&opened))
        return *error;
    const EGLDisplay display = std::get<EGLDisplay>(opened);
    EGLContext context = makeContext(display, EGL_OPENGL_API, 3, 3);
    const bool isEs = context == EGL_NO_CONTEXT;
    if (isEs)
        context = makeContext(display, EGL_OPENGL_ES_API, 3, 0);
    if (context == EGL_NO_CONTEXT)
        return "there is neither OpenGL 3.3 nor OpenGL ES 3";
    if (!eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context)) {
        eglDestroyContext(display, context);
        return "the GL context cannot be made current";
    }
    return std::unique_ptr<OffscreenContext>(new OffscreenContext(display, context, isEs));
}

OffscreenContext::OffscreenContext(void* display, void* context, bool isEs)
    : m_display(display), m_context(context), m_isEs(isEs) {}

OffscreenContext::~OffscreenContext() {
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(m_display, m_context);
    eglReleaseThread();
}

unsigned OffscreenContext::makeProgram(const std::string& vertex, const std::string& fragment) const {
    const GLuint program = glCreateProgram();
    for (const GLuint shader : {compile(GL_VERTEX_SHADER, vertex), compile(GL_FRAGMENT_SHADER, fragment)}) {
        glAttachShader(program, shader);
        glDeleteShader(shader);
    }
    glLinkProgram(program);
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    return linked ? program : 0;
}

unsigned OffscreenContext::compile(unsigned kind, const std::string& source) const {
    const char* version =
        m_isEs ? "#version 300 es\nprecision highp float;\nprecision highp int;\n" : "#version 330 core\n";
    const std::array<const char*, 2> parts{version, source.c_str()};
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, GLsizei(parts.size()), parts.data(), nullptr);
    glCompileShader(shader);
    return shader;
}

} // namespace kestrin::session

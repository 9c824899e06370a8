#include "linux/web/Sandbox.h"

#include "linux/toolkit/GRef.h"

#include <gio/gio.h>

#include <cstring>
#include <filesystem>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr const char* kSandboxSwitch = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";

/// It is switched off, or the whole application is in one already.
bool isNotWanted() {
    const char* disabled = g_getenv(kSandboxSwitch);
    return (disabled && std::strcmp(disabled, "0") != 0) || std::filesystem::exists("/.flatpak-info");
}

void report(platform::LogSink& log, const std::string& reason) {
    log.write("Kestrin - WebKitToolkit - The web process cannot start, its sandbox is refused (" + reason +
              "). Allow user namespaces, or set " + kSandboxSwitch + "=1 for pages that you trust.");
}

} // namespace

// The sandbox needs namespaces that containers and hardened kernels refuse; only the attempt is a sure test.
void checkSandbox(std::shared_ptr<platform::LogSink> log, const std::string& program) {
    if (isNotWanted())
        return;
    GFailure failure;
    const auto attempt = GRef<GSubprocess>::adopt(g_subprocess_new(
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDERR_PIPE | G_SUBPROCESS_FLAGS_STDOUT_SILENCE), failure.out(),
        program.c_str(), "--ro-bind", "/", "/", "--proc", "/proc", "--dev", "/dev", "true", nullptr));
    if (!attempt)
        return report(*log, failure.text());
    using Log = std::shared_ptr<platform::LogSink>;
    const auto ended = [](GObject* process, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<const Log> sink(static_cast<const Log*>(data));
        char* said = nullptr;
        g_subprocess_communicate_utf8_finish(G_SUBPROCESS(process), result, nullptr, &said, nullptr);
        const GText text(said);
        if (!g_subprocess_get_successful(G_SUBPROCESS(process)))
            report(**sink, text ? g_strchomp(text.get()) : "");
    };
    g_subprocess_communicate_utf8_async(attempt.get(), nullptr, nullptr, ended, new Log(std::move(log)));
}

} // namespace kestrin::gtk

#include "linux/web/WebEnvironment.h"

#include "linux/toolkit/GRef.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace kestrin::gtk {

namespace {

constexpr const char* kSandboxSwitch = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";

} // namespace

// The sandbox needs namespaces that containers and hardened kernels refuse. The attempt is the only sure
// test.
std::optional<std::string> sandboxProblem(const std::string& sandboxProgram) {
    const char* disabled = g_getenv(kSandboxSwitch);
    if (disabled && std::strcmp(disabled, "0") != 0)
        return std::nullopt;
    const std::array<const char*, 9> command{
        sandboxProgram.c_str(), "--ro-bind", "/", "/", "--proc", "/proc", "--dev", "/dev", "true"};
    std::array<char*, command.size() + 1> arguments{};
    std::transform(command.begin(), command.end(), arguments.begin(),
                   [](const char* argument) { return const_cast<char*>(argument); });
    GFailure failure;
    char* said = nullptr;
    int status = 0;
    const bool ran = g_spawn_sync(nullptr, arguments.data(), nullptr,
                                  GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL), nullptr,
                                  nullptr, nullptr, &said, &status, failure.out());
    const GText output(said);
    if (ran && g_spawn_check_wait_status(status, failure.out()))
        return std::nullopt;
    std::string reason = output && *output ? g_strchomp(output.get()) : failure.text();
    return "its sandbox is refused (" + reason + "). Allow user namespaces, or set " + kSandboxSwitch +
           "=1 for pages that you trust.";
}

} // namespace kestrin::gtk

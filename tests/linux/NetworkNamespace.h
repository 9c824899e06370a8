#pragma once

#include <sched.h>

#include <cstdlib>
#include <string>

namespace kestrin::test {

/// A network of its own for the calling thread and those that it starts later, with nothing in it but the
/// loopback device, which is down. Mounts made later are its own too.
class NetworkNamespace {
  public:
    /// False when the system does not let us: it needs root.
    static bool enter() { return unshare(CLONE_NEWNET | CLONE_NEWNS) == 0 && run("mount --make-rprivate /"); }
    static bool run(const std::string& command) { return std::system(command.c_str()) == 0; }
    /// One command of `ip` a line, in one process.
    static bool ip(const std::string& lines) { return run("ip -batch - <<'END'\n" + lines + "\nEND"); }
};

} // namespace kestrin::test

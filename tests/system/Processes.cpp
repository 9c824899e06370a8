#include "Processes.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>

namespace kestrin::test {

namespace {

constexpr const char* kWebProcess = "WebKitWebProces"; // the kernel keeps 15 characters

struct Process {
    std::string name;
    char state = 0;
    int parent = 0;
};

std::map<int, Process> allProcesses() {
    std::map<int, Process> all;
    std::error_code gone;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", gone)) {
        if (!std::isdigit(entry.path().filename().string().front()))
            continue;
        std::ifstream file(entry.path() / "stat");
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const auto open = text.find('('), close = text.rfind(')');
        if (close == std::string::npos)
            continue; // no process, or one that has just ended
        Process process{text.substr(open + 1, close - open - 1)};
        std::istringstream(text.substr(close + 1)) >> process.state >> process.parent;
        all[std::stoi(text)] = process;
    }
    return all;
}

} // namespace

std::vector<int> webProcesses() {
    const auto all = allProcesses();
    const auto isOurs = [&](int id) {
        while (id != getpid() && all.contains(id))
            id = all.at(id).parent; // a sandbox stands between
        return id == getpid();
    };
    std::vector<int> found;
    for (const auto& [id, process] : all)
        if (process.name == kWebProcess && process.state != 'Z' && isOurs(id))
            found.push_back(id);
    return found;
}

Memory memory() {
    malloc_trim(0);
    long whole = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    const struct mallinfo2 heap = mallinfo2();
    return {double(resident) * double(sysconf(_SC_PAGESIZE)) / 1e6,
            double(heap.uordblks + heap.hblkhd) / 1e6};
}

long sleepsOf(const char* thread) {
    long sleeps = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name, line;
        std::getline(std::ifstream(entry.path() / "comm") >> std::ws, name);
        if (name != thread)
            continue;
        std::ifstream status(entry.path() / "status");
        while (std::getline(status, line))
            if (line.starts_with("voluntary_ctxt_switches:"))
                sleeps += std::stol(line.substr(line.find(':') + 1));
    }
    return sleeps;
}

} // namespace kestrin::test

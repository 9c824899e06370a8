#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace kestrin::test {

/// The folder of a recorded real sequence: in $KESTRIN_DATA, else beside the project. Licences forbid to pass
/// them on, so a test that finds none is skipped.
inline std::filesystem::path realSequence(const std::string& name) {
    const char* const folder = std::getenv("KESTRIN_DATA");
    return std::filesystem::path(folder ? folder : KESTRIN_REAL_DATA) / name;
}

} // namespace kestrin::test

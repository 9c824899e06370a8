#pragma once

#include <filesystem>

namespace kestrin::test {

/// The person's folders during this test program: a temporary one, so that nothing of the real ones is read
/// or changed. It is in force before any test runs and removed at the end.
const std::filesystem::path& privateHome();

} // namespace kestrin::test

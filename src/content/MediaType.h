#pragma once

#include <string>
#include <string_view>

namespace kestrin::content {

/// The media type for a file's name, told from its ending in any case: the answer's Content-Type. A table of
/// our own, so that a machine without a MIME data base serves modules and WebAssembly as browsers demand
/// them. An unknown ending gives "application/octet-stream". Thread: any.
std::string mediaType(std::string_view fileName);

} // namespace kestrin::content

#pragma once

#include <string>

namespace kestrin::gtk {

/// Why a file cannot be played as a video; empty when it can. Takes its time. Thread: any but main.
std::string faultOfVideo(const std::string& path);

} // namespace kestrin::gtk

#pragma once

#include "MemoryTracking.h"
#include "core/KestrinView.h"

#include <memory>
#include <string>

namespace kestrin::bench {

constexpr int kWindowWidth = 800;
constexpr int kWindowHeight = 600;

/// Makes the process a host application whose tracking comes from memory, silent in the log. `hostMapEntry`
/// is "HOST=ADDRESS:PORT", or empty. Ends the process when there is no display.
std::shared_ptr<MemoryTracking> installPlatform(const std::string& hostMapEntry,
                                                const MemoryPictures& pictures = {});

/// A window with the host view, started with the page that the key string names. `posed` is told on main of
/// the time that the page answers each pose with, and of -1 when the page's script begins.
std::shared_ptr<KestrinView> startHostView(const std::string& keyString,
                                           std::function<void(double time)> posed);

} // namespace kestrin::bench

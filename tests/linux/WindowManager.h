#pragma once

namespace kestrin::test {

/// Sees to it that the display has a window manager until this program ends: without one no window ever gets
/// the focus.
void needWindowManager();

} // namespace kestrin::test

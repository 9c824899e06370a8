#pragma once

namespace kestrin::record {

/// From now on Ctrl+C and a polite kill are only noted, so that the work under way can be put aside.
void noteInterrupts();
bool isInterrupted();

} // namespace kestrin::record

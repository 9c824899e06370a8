#pragma once

#include "CommandLine.h"

namespace kestrin::record {

extern const Command kImport, kInfo, kCheck, kTrim, kExport;

} // namespace kestrin::record

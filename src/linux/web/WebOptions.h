#pragma once

#include <string>

namespace kestrin::gtk {

struct WebOptions {
    /// Where pages' stored data and cached responses are kept; when both are empty nothing is kept.
    std::string dataFolder, cacheFolder;
    double featureLevel = 12;
    /// Whether pages that may be inspected offer the inspector.
    bool developerExtras = false;
};

} // namespace kestrin::gtk

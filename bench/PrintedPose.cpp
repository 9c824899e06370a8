#include "PrintedPose.h"

#include <cstdio>

namespace kestrin::bench {

std::string printedPose(const platform::Matrix& m, float seconds) {
    char text[384];
    const int length =
        std::snprintf(text, sizeof text,
                      "window.__KRJ_Native_IN.onPose({\"pose\":[%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,"
                      "%.9g,%.9g,%.9g,"
                      "%.9g,%.9g,%.9g,%.9g],\"timestamp\":%.9g});",
                      double(m[0].x), double(m[0].y), double(m[0].z), double(m[0].w), //
                      double(m[1].x), double(m[1].y), double(m[1].z), double(m[1].w), //
                      double(m[2].x), double(m[2].y), double(m[2].z), double(m[2].w), //
                      double(m[3].x), double(m[3].y), double(m[3].z), double(m[3].w), double(seconds));
    return {text, std::size_t(length)};
}

} // namespace kestrin::bench

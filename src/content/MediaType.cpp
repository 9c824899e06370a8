#include "content/MediaType.h"

#include <algorithm>
#include <array>

namespace kestrin::content {
namespace {

struct Known {
    std::string_view ending, type;
};

constexpr std::string_view kScript = "text/javascript; charset=utf-8";
constexpr std::string_view kText = "text/plain; charset=utf-8";

constexpr std::array kKnown{
    Known{"avif", "image/avif"},
    Known{"bin", "application/octet-stream"},
    Known{"bmp", "image/bmp"},
    Known{"css", "text/css; charset=utf-8"},
    Known{"csv", "text/csv; charset=utf-8"},
    Known{"gif", "image/gif"},
    Known{"glb", "model/gltf-binary"},
    Known{"gltf", "model/gltf+json"},
    Known{"hdr", "image/vnd.radiance"},
    Known{"htm", "text/html; charset=utf-8"},
    Known{"html", "text/html; charset=utf-8"},
    Known{"ico", "image/x-icon"},
    Known{"jpeg", "image/jpeg"},
    Known{"jpg", "image/jpeg"},
    Known{"js", kScript},
    Known{"json", "application/json"},
    Known{"ktx2", "image/ktx2"},
    Known{"m4a", "audio/mp4"},
    Known{"map", "application/json"},
    Known{"md", kText},
    Known{"mjs", kScript},
    Known{"mp3", "audio/mpeg"},
    Known{"mp4", "video/mp4"},
    Known{"obj", "model/obj"},
    Known{"ogg", "audio/ogg"},
    Known{"otf", "font/otf"},
    Known{"pdf", "application/pdf"},
    Known{"png", "image/png"},
    Known{"svg", "image/svg+xml"},
    Known{"ttf", "font/ttf"},
    Known{"txt", kText},
    Known{"usdz", "model/vnd.usdz+zip"},
    Known{"wasm", "application/wasm"},
    Known{"wav", "audio/wav"},
    Known{"webm", "video/webm"},
    Known{"webmanifest", "application/manifest+json"},
    Known{"webp", "image/webp"},
    Known{"woff", "font/woff"},
    Known{"woff2", "font/woff2"},
    Known{"xml", "application/xml"},
    Known{"zip", "application/zip"},
};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

std::string mediaType(std::string_view fileName) {
    const std::size_t dot = fileName.rfind('.');
    std::string ending(dot == std::string_view::npos ? "" : fileName.substr(dot + 1));
    std::transform(ending.begin(), ending.end(), ending.begin(), lower);
    const auto known = std::find_if(kKnown.begin(), kKnown.end(),
                                    [&](const Known& entry) { return entry.ending == ending; });
    return std::string(known == kKnown.end() ? "application/octet-stream" : known->type);
}

} // namespace kestrin::content

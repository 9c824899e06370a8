#include "content/MediaType.h"

#include <gtest/gtest.h>

namespace kestrin::content {
namespace {

TEST(MediaType, IsToldFromTheEnding) {
    const std::pair<const char*, const char*> cases[] = {
        {"index.html", "text/html; charset=utf-8"},
        {"a.mjs", "text/javascript; charset=utf-8"},
        {"three.module.min.JS", "text/javascript; charset=utf-8"},
        {"style.css", "text/css; charset=utf-8"},
        {"data.json", "application/json"},
        {"draco.wasm", "application/wasm"},
        {"PHOTO.JPG", "image/jpeg"},
        {"photo.jpeg", "image/jpeg"},
        {"icon.svg", "image/svg+xml"},
        {"cube.glb", "model/gltf-binary"},
        {"cube.gltf", "model/gltf+json"},
        {"film.mp4", "video/mp4"},
        {"face.woff2", "font/woff2"},
        {"notes.txt", "text/plain; charset=utf-8"},
        {"cube.bin", "application/octet-stream"},
        {"README", "application/octet-stream"},
        {"html", "application/octet-stream"},
        {"page.html.bak", "application/octet-stream"},
        {"dot.", "application/octet-stream"},
        {"", "application/octet-stream"},
    };
    for (const auto& [name, type] : cases)
        EXPECT_EQ(mediaType(name), type) << name;
}

} // namespace
} // namespace kestrin::content

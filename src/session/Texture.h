#pragma once

#include "session/Room.h"

namespace kestrin::session {

/// Whether code makes a texture of that name.
bool isTextureName(const std::string& name);
/// Metres a repeat of a texture that code makes; 0 when it is stretched once over a surface.
float naturalTile(const std::string& name);
/// Width by height.
double aspectOf(const Texture& texture);
/// The pixels; absent when there is no such texture. One that code makes is made afresh. Thread: any.
platform::Image textureImage(const Texture& texture);
/// Half as wide and high, at least a pixel; each pixel is the mean of those it stands for.
platform::Image halved(const platform::Image& image);

} // namespace kestrin::session

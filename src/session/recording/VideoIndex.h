#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kestrin::session {

/// Where the frames lie in a Matroska file with one HuffYUV track.
struct VideoIndex {
    struct Packet {
        std::uint64_t offset;
        std::uint32_t size;
    };
    int width = 0, height = 0;           ///< as coded, pixels
    std::vector<std::uint8_t> codecData; ///< the decoder's tables
    std::vector<Packet> packets;         ///< whole ones, in the order of the file
};

/// Reads as many bytes as there are, up to `size`, from an offset on; their count.
using ReadAt = std::function<std::size_t(std::uint64_t offset, std::uint8_t* bytes, std::size_t size)>;

/// Walks over a file from one element to the next without reading the frames themselves. What lies behind
/// damage, or behind `most` frames, is left out. None when it does not begin as such a file.
std::optional<VideoIndex> readVideoIndex(const ReadAt& read, std::uint64_t fileSize, std::size_t most);

} // namespace kestrin::session

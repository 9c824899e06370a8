#pragma once

#include "session/Nv12Buffer.h"
#include "session/recording/ElementChain.h"
#include "session/recording/VideoIndex.h"

#include <gst/video/video.h>

#include <filesystem>
#include <string>
#include <variant>

namespace kestrin::session {

/// Decodes the pictures of a video file, each by itself. Not thread-safe.
class VideoReader {
  public:
    /// Finds up to `most` pictures. "FILE: why", when it is no such video or has pictures of another size.
    static std::variant<std::unique_ptr<VideoReader>, std::string>
    open(const std::filesystem::path& file, int width, int height, std::size_t most);
    ~VideoReader();
    VideoReader(const VideoReader&) = delete;
    VideoReader& operator=(const VideoReader&) = delete;

    std::size_t size() const { return m_index.packets.size(); }

    /// False when the picture cannot be had, which may then be anything.
    bool decode(std::size_t index, Nv12Buffer& picture);

  private:
    explicit VideoReader(int file) : m_file(file) {}
    std::size_t readAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t size) const;
    std::string start();

    const int m_file;
    VideoIndex m_index;
    GstVideoInfo m_format{};         ///< of what the decoder gives
    Nv12Buffer* m_picture = nullptr; ///< to be filled
    bool m_isFilled = false;
    GstClockTime m_time = 0; ///< the decoder wants one that goes up
    std::unique_ptr<ElementChain> m_chain;
};

} // namespace kestrin::session

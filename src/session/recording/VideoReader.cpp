#include "session/recording/VideoReader.h"

#include "session/recording/PictureCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iomanip>
#include <sstream>
#include <utility>

namespace kestrin::session {

std::variant<std::unique_ptr<VideoReader>, std::string>
VideoReader::open(const std::filesystem::path& path, int width, int height, std::size_t most) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return path.string() + ": cannot be read";
    std::unique_ptr<VideoReader> reader(new VideoReader(file));
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        return path.string() + ": cannot be read";
    const auto read = [&](std::uint64_t offset, std::uint8_t* bytes, std::size_t size) {
        return reader->readAt(offset, bytes, size);
    };
    auto index = readVideoIndex(read, std::uint64_t(status.st_size), most);
    if (!index)
        return path.string() + ": is no Matroska file with HuffYUV video";
    if (index->width != width + width % 2 || index->height != height)
        return path.string() + ": has pictures of " + std::to_string(index->width) + "x" +
               std::to_string(index->height);
    reader->m_index = std::move(*index);
    if (const std::string missing = reader->start(); !missing.empty())
        return path.string() + ": there is not " + missing;
    return reader;
}

VideoReader::~VideoReader() { ::close(m_file); }

std::size_t VideoReader::readAt(std::uint64_t offset, std::uint8_t* bytes, std::size_t size) const {
    std::size_t count = 0;
    while (count < size) {
        const ssize_t more = ::pread(m_file, bytes + count, size - count, off_t(offset + count));
        if (more <= 0)
            break;
        count += std::size_t(more);
    }
    return count;
}

/// What is missing for it; empty when all is well.
std::string VideoReader::start() {
    std::ostringstream coded;
    coded << "video/x-huffyuv,framerate=30/1,width=" << m_index.width << ",height=" << m_index.height
          << ",codec_data=(buffer)" << std::hex << std::setfill('0');
    for (const unsigned byte : m_index.codecData)
        coded << std::setw(2) << byte;
    const auto format = [this](GstCaps* decoded) { gst_video_info_from_caps(&m_format, decoded); };
    const auto fill = [this](GstBuffer* buffer) {
        m_isFilled = m_picture && fromVideo(buffer, m_format, *m_picture);
        return m_isFilled;
    };
    std::string missing;
    m_chain =
        ElementChain::make({{"avdec_huffyuv", {{"max-threads", "1"}}}}, coded.str(), {format, fill}, missing);
    return missing;
}

bool VideoReader::decode(std::size_t index, Nv12Buffer& picture) {
    m_picture = &picture;
    m_isFilled = false;
    const VideoIndex::Packet packet = m_index.packets[index];
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, packet.size, nullptr);
    GstMapInfo bytes;
    gst_buffer_map(buffer, &bytes, GST_MAP_WRITE);
    const bool isWhole = readAt(packet.offset, bytes.data, bytes.size) == packet.size;
    gst_buffer_unmap(buffer, &bytes);
    GST_BUFFER_PTS(buffer) = m_time += GST_MSECOND;
    if (isWhole)
        m_chain->push(buffer);
    else
        gst_buffer_unref(buffer);
    m_picture = nullptr;
    return m_isFilled;
}

} // namespace kestrin::session

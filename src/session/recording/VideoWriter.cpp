#include "session/recording/VideoWriter.h"

#include "session/recording/PictureCopy.h"

namespace kestrin::session {

namespace {

constexpr const char *kCoder = "avenc_huffyuv", *kMuxer = "matroskamux";

}

void VideoWriter::prepare() { ElementChain::load({kCoder, kMuxer}); }

VideoWriter::VideoWriter(const std::filesystem::path& file, int width, int height)
    : m_name(file.string()), m_file(file) {
    const auto write = [this](GstBuffer* buffer) {
        GstMapInfo bytes;
        if (!gst_buffer_map(buffer, &bytes, GST_MAP_READ))
            return false;
        const bool isWritten = m_file.write(bytes.data, bytes.size);
        gst_buffer_unmap(buffer, &bytes);
        return isWritten;
    };
    const std::string pictures = "video/x-raw,format=Y42B,colorimetry=1:4:7:1,framerate=30/1,width=" +
                                 std::to_string(width + width % 2) + ",height=" + std::to_string(height);
    std::string missing;
    m_chain = ElementChain::make(
        {{kCoder, {{"threads", "1"}}}, {kMuxer, {{"streamable", "true"}, {"writing-app", "Kestrin"}}}},
        pictures, {{}, write}, missing);
    if (!m_chain)
        m_error = m_name + ": there is not " + missing;
}

std::optional<std::string> VideoWriter::add(double time, const Nv12Buffer& picture) {
    if (error())
        return error();
    GstBuffer* buffer = toVideo(picture, videoFormat(picture.width(), picture.height()));
    GST_BUFFER_PTS(buffer) = GstClockTime(time * 1e9 + 0.5);
    if (!m_chain->push(buffer) && !m_file.error())
        m_error = m_name + ": the picture cannot be coded";
    return error();
}

std::optional<std::string> VideoWriter::finish() {
    if (!error())
        m_chain->end();
    return error();
}

} // namespace kestrin::session

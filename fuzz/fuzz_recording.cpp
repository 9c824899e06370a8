// What the files of a recording can hold: any bytes.
#include "session/recording/LineText.h"
#include "session/recording/RecordingIndex.h"
#include "session/recording/VideoIndex.h"

#include <algorithm>

namespace {

using namespace kestrin::session;

/// What was read without a fault gives the same lines again, and the same after these were read.
std::string linesOf(const RecordingIndex& index) {
    std::string lines = headerLine(*index.info) + "\n";
    for (const RecordedFrame& frame : index.frames)
        lines += frameLine(frame) + "\n";
    return lines + (index.isFinished ? endLine(index.frames.size()) + "\n" : "");
}

void readText(std::string_view text) {
    const RecordingIndex index = readIndex(text);
    if (index.fault || !index.info)
        return;
    const std::string lines = linesOf(index);
    const RecordingIndex again = readIndex(lines);
    if (again.fault || again.frames.size() != index.frames.size() || linesOf(again) != lines)
        __builtin_trap();
}

void readVideo(const std::uint8_t* data, std::size_t size) {
    const ReadAt read = [&](std::uint64_t offset, std::uint8_t* bytes, std::size_t most) {
        const std::size_t count = offset < size ? std::min<std::size_t>(most, size - offset) : 0;
        std::copy_n(data + std::min<std::uint64_t>(offset, size), count, bytes);
        return count;
    };
    const auto index = readVideoIndex(read, size, 1000);
    if (!index)
        return;
    for (const VideoIndex::Packet& packet : index->packets)
        if (packet.offset > size || packet.size > size - packet.offset)
            __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readText({reinterpret_cast<const char*>(data), size});
    readVideo(data, size);
    return 0;
}

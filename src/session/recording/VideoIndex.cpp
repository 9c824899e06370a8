#include "session/recording/VideoIndex.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <string_view>

namespace kestrin::session {

namespace {

// Elements of Matroska.
constexpr std::uint64_t kEbml = 0x1A45DFA3, kSegment = 0x18538067, kTracks = 0x1654AE6B, kTrackEntry = 0xAE,
                        kTrackNumber = 0xD7, kTrackType = 0x83, kCodec = 0x86, kCodecPrivate = 0x63A2,
                        kEncodings = 0x6D80, kVideo = 0xE0, kWidth = 0xB0, kHeight = 0xBA,
                        kCluster = 0x1F43B675, kBlockGroup = 0xA0, kBlock = 0xA1, kSimpleBlock = 0xA3;
constexpr std::uint64_t kUnknown = UINT64_MAX;

constexpr std::uint64_t kVideoTrack = 1;
constexpr std::string_view kBitmapCodec = "V_MS/VFW/FOURCC", kFourcc = "HFYU";
constexpr std::size_t kBitmapHeader = 40, kFourccAt = 16;
constexpr std::uint64_t kMostCodecData = 4096;
constexpr std::uint64_t kMostBytesPerPixel = 16, kMostSmallPacket = 65536;
// Files with more small elements than that between frames are none that anyone plays.
constexpr std::size_t kElementsAtFirst = 10'000, kElementsPerFrame = 20;

/// A variable-length number and how many bytes it takes.
struct Number {
    std::uint64_t value;
    std::size_t length;
};

class Walk {
  public:
    Walk(const ReadAt& read, std::uint64_t fileSize, std::size_t most)
        : m_read(read), m_fileSize(fileSize), m_most(most) {}

    std::optional<VideoIndex> run() {
        for (std::size_t steps = 0;
             steps < kElementsAtFirst + kElementsPerFrame * m_index.packets.size() && step(); ++steps) {
        }
        if (m_track == 0)
            return {};
        return std::move(m_index);
    }

  private:
    std::array<std::uint8_t, 16> bytesAt(std::uint64_t offset, std::size_t& count) const {
        std::array<std::uint8_t, 16> bytes{};
        count = offset < m_fileSize ? m_read(offset, bytes.data(), bytes.size()) : 0;
        return bytes;
    }
    static std::optional<Number> number(const std::uint8_t* bytes, std::size_t count, bool keepsMarker) {
        const std::size_t length = count > 0 ? std::size_t(std::countl_zero(bytes[0])) + 1 : 9;
        if (length > 8 || length > count)
            return {};
        std::uint64_t value = keepsMarker ? bytes[0] : bytes[0] & (0xFFU >> length);
        bool isUnknown = value == (0xFFU >> length);
        for (std::size_t i = 1; i < length; ++i) {
            value = value << 8U | bytes[i];
            isUnknown = isUnknown && bytes[i] == 0xFF;
        }
        return Number{!keepsMarker && isUnknown ? kUnknown : value, length};
    }

    /// One element: containers are entered, so that it does not matter how long they say they are.
    bool step() {
        std::size_t count = 0;
        const auto bytes = bytesAt(m_at, count);
        const auto id = number(bytes.data(), count, true);
        if (!id)
            return false;
        const auto size = number(bytes.data() + id->length, count - id->length, false);
        if (!size || (m_at == 0 && id->value != kEbml))
            return false;
        m_at += id->length + size->length;
        for (const std::uint64_t container : {kSegment, kTracks, kTrackEntry, kVideo, kCluster, kBlockGroup})
            if (id->value == container)
                return container != kTrackEntry || beginTrack();
        if (size->value > m_fileSize - m_at || !take(id->value, size->value))
            return false;
        m_at += size->value;
        return true;
    }

    bool beginTrack() { return ++m_entries == 1; }

    bool take(std::uint64_t id, std::uint64_t size) {
        if (id == kBlock || id == kSimpleBlock)
            return m_track != 0 && takeBlock(size);
        if (m_entries == 0)
            return true;
        if (id == kTrackNumber)
            m_entry.number = unsignedAt(size);
        else if (id == kTrackType)
            m_entry.isVideo = unsignedAt(size) == kVideoTrack;
        else if (id == kWidth)
            m_index.width = int(std::min<std::uint64_t>(unsignedAt(size), 1U << 16U));
        else if (id == kHeight)
            m_index.height = int(std::min<std::uint64_t>(unsignedAt(size), 1U << 16U));
        else if (id == kCodec)
            m_entry.hasCodec = std::string_view(textAt(size)).substr(0, kBitmapCodec.size()) == kBitmapCodec;
        else if (id == kEncodings || (id == kCodecPrivate && !takeCodecData(size)))
            return false;
        if (m_entry.number != 0 && m_entry.isVideo && m_entry.hasCodec && !m_index.codecData.empty() &&
            m_index.width > 0 && m_index.height > 0)
            m_track = m_entry.number;
        return true;
    }

    bool takeCodecData(std::uint64_t size) {
        const std::string data = textAt(size);
        if (data.size() <= kBitmapHeader || data.substr(kFourccAt, kFourcc.size()) != kFourcc)
            return false;
        m_index.codecData.assign(data.begin() + kBitmapHeader, data.end());
        return true;
    }

    /// Track, time, flags, then the frame.
    bool takeBlock(std::uint64_t size) {
        std::size_t count = 0;
        const auto bytes = bytesAt(m_at, count);
        const auto track = number(bytes.data(), count, false);
        if (!track || track->length + 3 > count)
            return false;
        const std::size_t header = track->length + 3;
        const bool isLaced = (bytes[track->length + 2] & 0x06U) != 0;
        if (track->value != m_track || isLaced || size <= header || size > mostPacket())
            return false;
        m_index.packets.push_back({m_at + header, std::uint32_t(size - header)});
        return m_index.packets.size() < m_most;
    }

    /// Far more than the coding makes of noise.
    std::uint64_t mostPacket() const {
        return kMostSmallPacket +
               kMostBytesPerPixel * std::uint64_t(m_index.width) * std::uint64_t(m_index.height);
    }

    std::uint64_t unsignedAt(std::uint64_t size) const {
        std::size_t count = 0;
        const auto bytes = bytesAt(m_at, count);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < std::min<std::uint64_t>({size, count, 8}); ++i)
            value = value << 8U | bytes[i];
        return value;
    }
    std::string textAt(std::uint64_t size) const {
        std::string text(std::min(size, kMostCodecData), '\0');
        text.resize(m_read(m_at, reinterpret_cast<std::uint8_t*>(text.data()), text.size()));
        return text;
    }

    struct Entry {
        std::uint64_t number = 0;
        bool isVideo = false, hasCodec = false;
    };
    const ReadAt& m_read;
    const std::uint64_t m_fileSize;
    const std::size_t m_most;
    std::uint64_t m_at = 0;
    int m_entries = 0;
    Entry m_entry;
    std::uint64_t m_track = 0; ///< number of the video track, once it is known
    VideoIndex m_index;
};

} // namespace

std::optional<VideoIndex> readVideoIndex(const ReadAt& read, std::uint64_t fileSize, std::size_t most) {
    return Walk(read, fileSize, most).run();
}

} // namespace kestrin::session

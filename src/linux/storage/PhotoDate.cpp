#include "linux/storage/PhotoDate.h"

#include <libexif/exif-data.h>

#include <cstdlib>
#include <cstring>

namespace kestrin::gtk {

namespace {

using Block = GOwned<ExifData, exif_data_unref>;
using Bytes = GOwned<unsigned char, std::free>;

constexpr std::size_t kMarkerSize = 2;

void setText(ExifData& block, ExifIfd place, ExifTag tag, const std::string& text) {
    ExifMem* const memory = exif_mem_new_default();
    ExifEntry* const entry = exif_entry_new_mem(memory);
    entry->tag = tag;
    entry->format = EXIF_FORMAT_ASCII;
    entry->components = text.size() + 1;
    entry->size = unsigned(text.size() + 1);
    entry->data = static_cast<unsigned char*>(exif_mem_alloc(memory, entry->size));
    std::memcpy(entry->data, text.c_str(), entry->size);
    exif_content_add_entry(block.ifd[place], entry);
    exif_entry_unref(entry);
    exif_mem_unref(memory);
}

} // namespace

PhotoDate::PhotoDate(std::chrono::system_clock::time_point moment)
    : m_moment(g_date_time_new_from_unix_local(std::chrono::system_clock::to_time_t(moment))) {}

std::string PhotoDate::text(const char* pattern) const {
    return GText(g_date_time_format(m_moment.get(), pattern)).get();
}

std::vector<std::uint8_t> PhotoDate::exifBlock() const {
    const Block block(exif_data_new());
    exif_data_set_byte_order(block.get(), EXIF_BYTE_ORDER_INTEL);
    const std::string date = text("%Y:%m:%d %H:%M:%S"), zone = text("%:z");
    setText(*block, EXIF_IFD_0, EXIF_TAG_DATE_TIME, date);
    setText(*block, EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_ORIGINAL, date);
    setText(*block, EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_DIGITIZED, date);
    setText(*block, EXIF_IFD_EXIF, EXIF_TAG_OFFSET_TIME, zone);
    setText(*block, EXIF_IFD_EXIF, EXIF_TAG_OFFSET_TIME_ORIGINAL, zone);
    setText(*block, EXIF_IFD_EXIF, EXIF_TAG_OFFSET_TIME_DIGITIZED, zone);
    unsigned char* saved = nullptr;
    unsigned int size = 0;
    exif_data_save_data(block.get(), &saved, &size);
    const Bytes owned(saved);
    return {saved, saved + size};
}

std::vector<std::uint8_t> PhotoDate::writtenInto(std::span<const std::uint8_t> jpeg) const {
    if (jpeg.size() < kMarkerSize)
        return {jpeg.begin(), jpeg.end()};
    const auto block = exifBlock();
    const std::size_t length = block.size() + 2; // which counts itself
    // The block comes first of all, as readers expect it: after the two bytes that begin a JPEG file.
    std::vector<std::uint8_t> dated(jpeg.begin(), jpeg.begin() + kMarkerSize);
    dated.insert(dated.end(), {0xFF, 0xE1, std::uint8_t(length >> 8), std::uint8_t(length & 0xFF)});
    dated.insert(dated.end(), block.begin(), block.end());
    dated.insert(dated.end(), jpeg.begin() + kMarkerSize, jpeg.end());
    return dated;
}

} // namespace kestrin::gtk

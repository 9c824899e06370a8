#pragma once

#include <libexif/exif-data.h>

#include <filesystem>
#include <string>

namespace kestrin::test {

/// When a photo was made, "2026:03:09 14:05:59" in the time zone of the camera; empty when it does not say.
inline std::string exifDateIn(const std::filesystem::path& file) {
    ExifData* const block = exif_data_new_from_file(file.c_str());
    ExifEntry* const entry =
        block ? exif_content_get_entry(block->ifd[EXIF_IFD_EXIF], EXIF_TAG_DATE_TIME_ORIGINAL) : nullptr;
    const std::string date = entry ? reinterpret_cast<const char*>(entry->data) : "";
    if (block)
        exif_data_unref(block);
    return date;
}

} // namespace kestrin::test

#include "linux/toolkit/SharedPicture.h"

#include "linux/storage/PixbufCodec.h"

namespace kestrin::gtk {

std::optional<std::string> writePicture(const platform::Image& image, GFile* file) {
    const auto bytes = PixbufCodec().encodeJpeg(image, 1);
    if (bytes.empty())
        return "The picture cannot be written as JPEG.";
    GFailure failure;
    const bool written =
        g_file_replace_contents(file, reinterpret_cast<const char*>(bytes.data()), bytes.size(), nullptr,
                                false, G_FILE_CREATE_REPLACE_DESTINATION, nullptr, nullptr, failure.out());
    return written ? std::nullopt : std::optional<std::string>(failure.text());
}

GRef<GFile> writeTemporaryPicture(const platform::Image& image, const char* name) {
    const GText folder(g_dir_make_tmp("kestrin-XXXXXX", nullptr));
    if (!folder)
        return {};
    auto file = GRef<GFile>::adopt(g_file_new_build_filename(folder.get(), name, nullptr));
    return writePicture(image, file.get()) ? GRef<GFile>() : file;
}

} // namespace kestrin::gtk

#include "session/import/Picture.h"

#include "linux/storage/PixbufCodec.h"
#include "session/FileBytes.h"
#include "session/import/ImportError.h"
#include "session/recording/RecordingLimits.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <memory>

namespace kestrin::session {

namespace {

constexpr std::size_t kMaximumBytes = 100'000'000;

struct Planes {
    cv::Mat luma, chroma;
};

/// The picture's own memory. OpenCV knows no read-only pixels.
Planes planesOf(const Nv12Buffer& picture) {
    const platform::PixelPlane luma = picture.plane(0), chroma = picture.plane(1);
    const auto mat = [](const platform::PixelPlane& plane, int type) {
        return cv::Mat(plane.height, plane.width, type, const_cast<std::uint8_t*>(plane.data),
                       std::size_t(plane.stride));
    };
    return {mat(luma, CV_8UC1), mat(chroma, CV_8UC2)};
}

cv::Size evenSize(const cv::Mat& chroma) { return {2 * chroma.cols, 2 * chroma.rows}; }

} // namespace

cv::Mat readPicture(const std::filesystem::path& file) {
    const std::optional<std::string> bytes = readFile(file, kMaximumBytes);
    if (!bytes)
        throw ImportError(file.string() + ": cannot be read");
    const platform::Image image =
        gtk::PixbufCodec().decode({reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size()});
    if (!image.isValid())
        throw ImportError(file.string() + ": is no picture, or a broken one");
    if (image.pixelWidth() > kMostSide || image.pixelHeight() > kMostSide)
        throw ImportError(file.string() + ": is wider or higher than " + std::to_string(kMostSide) +
                          " pixels");
    const cv::Mat rgba(image.pixelHeight(), image.pixelWidth(), CV_8UC4,
                       const_cast<std::uint8_t*>(image.pixels().data()));
    cv::Mat rgb;
    cv::cvtColor(rgba, rgb, cv::COLOR_RGBA2RGB);
    return rgb;
}

void writePicture(const std::filesystem::path& file, const cv::Mat& rgb) {
    const std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)> pixbuf(
        gdk_pixbuf_new_from_data(rgb.data, GDK_COLORSPACE_RGB, FALSE, 8, rgb.cols, rgb.rows, int(rgb.step),
                                 nullptr, nullptr),
        g_object_unref);
    g_autoptr(GError) error = nullptr;
    const bool written =
        file.extension() == ".jpg"
            ? gdk_pixbuf_save(pixbuf.get(), file.c_str(), "jpeg", &error, "quality", "95", nullptr)
            : gdk_pixbuf_save(pixbuf.get(), file.c_str(), "png", &error, nullptr);
    if (!written)
        throw ImportError(file.string() + ": cannot be written: " + error->message);
}

Nv12Buffer toNv12(const cv::Mat& rgb) {
    Nv12Buffer picture(rgb.cols, rgb.rows);
    Planes planes = planesOf(picture);
    cv::Mat ycc, small;
    cv::cvtColor(rgb, ycc, cv::COLOR_RGB2YCrCb);
    cv::extractChannel(ycc, planes.luma, 0);
    const cv::Size even = evenSize(planes.chroma);
    cv::copyMakeBorder(ycc, ycc, 0, even.height - rgb.rows, 0, even.width - rgb.cols, cv::BORDER_REPLICATE);
    cv::resize(ycc, small, planes.chroma.size(), 0, 0, cv::INTER_AREA);
    cv::mixChannels(std::vector{small}, planes.chroma, {2, 0, 1, 1});
    return picture;
}

cv::Mat toRgb(const Nv12Buffer& picture) {
    const Planes planes = planesOf(picture);
    cv::Mat chroma, rgb;
    cv::resize(planes.chroma, chroma, evenSize(planes.chroma), 0, 0, cv::INTER_LINEAR);
    cv::Mat ycc(planes.luma.size(), CV_8UC3);
    const std::vector channels{planes.luma, chroma(cv::Rect({}, planes.luma.size()))};
    cv::mixChannels(channels, ycc, {0, 0, 2, 1, 1, 2});
    cv::cvtColor(ycc, rgb, cv::COLOR_YCrCb2RGB);
    return rgb;
}

} // namespace kestrin::session

#pragma once

#include "platform/Image.h"

#include <boost/json/fwd.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

/// Conversions, requests and questions that every room uses. Nothing is raised: a failure gives the neutral
/// value said below. Thread: any, unless said otherwise.
class KestrinUtil {
  public:
    /// Gets the answer, or none.
    using JsonCallback = std::function<void(std::optional<boost::json::value> answer)>;

    /// Compact JSON text; "{}" or "[]" for null and for what cannot be written (not-a-number, infinity).
    static std::string dictToJSON(const boost::json::object* map);
    static std::string arrToJSON(const boost::json::array* list);
    /// The same as base64 without line breaks.
    static std::string dictToJSON64(const boost::json::object* map);
    static std::string arrToJSON64(const boost::json::array* list);

    /// Whatever value the text holds. An absent text gives an empty map or list; one that is not JSON, or
    /// nests deeper than kMaxJsonDepth, gives none.
    static std::optional<boost::json::value> jsonToDict(std::optional<std::string_view> text);
    static std::optional<boost::json::value> jsonToArray(std::optional<std::string_view> text);
    /// The same from strict base64, with an empty map for an absent text.
    static std::optional<boost::json::value> json64ToDict(std::optional<std::string_view> text);

    /// GETs a map or list, whatever the HTTP status. `callback` runs on main, never inside the call; a
    /// transport error, an empty body and anything but a map or list give it none.
    static void sendAsyncRequest(const std::string& url, JsonCallback callback);
    /// POSTs {"file": the image as convertImageToBase64JPEG writes it}, and answers like the above. The
    /// picture is encoded on a worker.
    static void sendAsyncImageRequest(const std::string& url, const platform::Image& image,
                                      JsonCallback callback);
    /// The same with the members of `params`, which may be null and whose own "file" does not count.
    static void sendAsyncImageRequestWithParams(const std::string& url, const platform::Image& image,
                                                const boost::json::object* params, JsonCallback callback);
    /// Fetches and waits; none when nothing came or it is no JSON. Thread: worker.
    static std::optional<boost::json::value> getJSONFromURL(const std::string& url);
    /// Fetches and waits; absent when nothing came or it is no picture. Thread: worker.
    static platform::Image getImageFromURL(const std::string& url);

    /// The JSON resource `name` of the application's bundle; an empty map when it is missing or broken.
    static boost::json::value loadJSONBundled(const std::string& name);

    /// Keeps the image in the documents folder as "NAME.jpg", at the best quality; nothing happens when it
    /// cannot be written. A name that would lead out of the folder is refused.
    static void saveJPGImage(const platform::Image& image, const std::string& fileName);
    /// What was saved under that name, shrunk to at most that many pixels, or an absent image.
    static platform::Image loadJPGImage(const std::string& fileName,
                                        std::int64_t mostPixels = platform::ImageCodec::kMostPixels);
    /// The image of that name in the application's bundle, with its extension or without, or an absent one.
    /// It is decoded once and kept.
    static platform::Image loadJPGImageBundled(const std::string& name);
    static platform::Image loadImageBundled(const std::string& name);
    /// JPEG at the best quality as base64 in lines of 64 characters with CR LF between them; empty for an
    /// absent image.
    static std::string convertImageToBase64JPEG(const platform::Image& image);
    /// The rectangle (pixels, from the top-left corner) as far as it lies within the image, at scale 1; an
    /// absent image when nothing of it does.
    static platform::Image cropImage(const platform::Image& image, std::int32_t startX, std::int32_t startY,
                                     std::int32_t width, std::int32_t height);

    /// A class of telephone by the height of the screen's pixels in portrait, or "unknown". Thread: main.
    static std::string getDeviceType();
    static bool isDevice(std::string_view name);

    /// Shows a modal message with one button, later on main.
    static void showAlert(const std::string& message, const std::string& title,
                          const std::string& exitButton);
    /// An alert titled "Error".
    static void errorNotify(const std::string& message);

    KestrinUtil() = delete;
};

} // namespace kestrin

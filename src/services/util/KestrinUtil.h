#pragma once

#include "platform/Image.h"

#include <boost/json/fwd.hpp>

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
    /// Fetches and waits; none when nothing came or it is no JSON. Thread: worker.
    static std::optional<boost::json::value> getJSONFromURL(const std::string& url);
    /// Fetches and waits; absent when nothing came or it is no picture. Thread: worker.
    static platform::Image getImageFromURL(const std::string& url);

    /// The JSON resource `name` of the application's bundle; an empty map when it is missing or broken.
    static boost::json::value loadJSONBundled(const std::string& name);

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

#include "content/Records.h"

#include "content/GPointer.h"

#include <boost/json.hpp>
#include <libsoup/soup.h>

namespace kestrin::content {
namespace {

namespace json = boost::json;

std::string base64(const json::value& value) {
    const std::string text = json::serialize(value);
    return GText(g_base64_encode(reinterpret_cast<const guchar*>(text.data()), text.size())).get();
}

} // namespace

std::string applicationRecord(const Application& application) {
    const json::array flags(application.featureFlags.begin(), application.featureFlags.end());
    const json::object attributes{{"title", application.title}, {"feature_flags", json::serialize(flags)}};
    const json::object data{{"id", application.id}, {"type", "application"}, {"attributes", attributes}};
    return json::serialize(json::object{{"data", data}});
}

std::string applicationKeyRecord(const std::string& keyString) {
    return json::serialize(json::object{{"data", json::object{{"appkey", keyString}}}});
}

std::string errorRecord(unsigned status, const std::string& detail) {
    const GText readable(g_utf8_make_valid(detail.data(), static_cast<gssize>(detail.size())));
    const json::object error{{"status", std::to_string(status)},
                             {"title", soup_status_get_phrase(status)},
                             {"detail", readable.get()}};
    return json::serialize(json::object{{"errors", json::array{error}}});
}

std::string keyString(const Application& application, const std::string& templateUrl) {
    json::object data{{"appID", application.id}};
    if (!application.theme.empty())
        data["theme"] = application.theme;
    const json::array command{json::object{{"eventName", "sdkloadapplication"}, {"data", data}}};
    return base64(
        json::object{{"baseUrl", templateUrl}, {"baseCommand", base64(command)}, {"debugEnabled", true}});
}

} // namespace kestrin::content

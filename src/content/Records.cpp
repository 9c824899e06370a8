#include "content/Records.h"

#include "content/GPointer.h"

#include <boost/json.hpp>
#include <libsoup/soup.h>

#include <set>
#include <utility>

namespace kestrin::content {
namespace {

namespace json = boost::json;

std::string base64(const json::value& value) {
    const std::string text = json::serialize(value);
    return GText(g_base64_encode(reinterpret_cast<const guchar*>(text.data()), text.size())).get();
}

json::object record(const std::string& id, const std::string& type, json::object attributes) {
    return {{"id", id}, {"type", type}, {"attributes", std::move(attributes)}};
}

} // namespace

std::string applicationRecord(const Application& application) {
    const json::array flags(application.featureFlags.begin(), application.featureFlags.end());
    const json::object attributes{{"title", application.title}, {"feature_flags", json::serialize(flags)}};
    return json::serialize(json::object{{"data", record(application.id, "application", attributes)}});
}

std::string applicationKeyRecord(const std::string& keyString) {
    return json::serialize(json::object{{"data", json::object{{"appkey", keyString}}}});
}

std::string triggerBundle(const Application& application, const std::string& pictures) {
    json::array triggers, files;
    std::set<std::string> included;
    for (const Trigger& trigger : application.triggers) {
        const std::string file = trigger.picture.generic_string();
        json::object attributes{{"scene_id", trigger.scene}, {"file_id", file}};
        if (trigger.width > 0)
            attributes["width"] = trigger.width;
        if (trigger.height > 0)
            attributes["height"] = trigger.height;
        triggers.push_back(record(trigger.id, "trigger", std::move(attributes)));
        if (!included.insert(file).second)
            continue;
        const GText path(g_uri_escape_string(file.c_str(), "/", FALSE));
        files.push_back(record(file, "file", {{"effective_uri", pictures + path.get()}}));
    }
    return json::serialize(json::object{{"data", std::move(triggers)}, {"included", std::move(files)}});
}

std::string entryRecords(const std::vector<Entry>& entries, const std::string& type,
                         const std::optional<std::string>& title) {
    json::array records;
    for (const Entry& entry : entries)
        if (!title || entry.title == *title)
            records.push_back(record(entry.id, type, {{"title", entry.title}}));
    return json::serialize(json::object{{"data", std::move(records)}});
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

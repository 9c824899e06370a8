#pragma once

#include "services/util/Format.h"
#include "support/FakePlatform.h"

#include <string>
#include <vector>

namespace kestrin::test {

inline constexpr const char* kTriggerBundle =
    "http://s/api/v2/application/app/triggerbundleios?include=file&fields[file]=effective_uri";

inline std::string pictureBytes(int width, int height) {
    const auto bytes = FakeImageCodec().encodeJpeg(makeImage(width, height), 1);
    return {bytes.begin(), bytes.end()};
}

/// Answers with triggers of these ids, each with a good picture.
inline void serveTriggers(FakeHttp& server, const std::vector<std::string>& ids) {
    std::string records, files;
    for (const std::string& id : ids) {
        const char* comma = records.empty() ? "" : ",";
        records += format(R"(%@{"id":"%@","attributes":{"scene_id":1,"file_id":"f%@"}})", comma, id, id);
        files += format(R"(%@{"id":"f%@","attributes":{"effective_uri":"http://s/%@"}})", comma, id, id);
        server.answer("http://s/" + id, pictureBytes(100, 100));
    }
    server.answer(kTriggerBundle, format(R"({"data":[%@],"included":[%@]})", records, files));
}

} // namespace kestrin::test

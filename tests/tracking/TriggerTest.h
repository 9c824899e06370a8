#pragma once

#include "ProcessorTest.h"
#include "services/util/Format.h"
#include "tracking/KestrinTriggerList.h"

#include <memory>
#include <string>
#include <vector>

namespace kestrin::test {

inline constexpr const char* kTriggerBundle =
    "http://s/api/v2/application/app/triggerbundleios?include=file&fields[file]=effective_uri";

/// The trigger list is on, and empty.
struct TriggerTest : ProcessorTest {
    TriggerTest() {
        useFlags({"nativetriggers", "triggerimage"});
        list = KestrinTriggerList::getInstance();
    }

    void useFlags(const std::vector<const char*>& words) {
        KestrinFeatureFlags::getInstance()->clear();
        for (const char* word : words)
            flag(word);
    }
    static std::string pictureBytes(int width, int height) {
        const auto bytes = FakeImageCodec().encodeJpeg(makeImage(width, height), 1);
        return {bytes.begin(), bytes.end()};
    }
    /// Triggers of these ids, each with a good picture.
    void serve(const Lines& ids) {
        std::string records, files;
        for (const std::string& id : ids) {
            const char* comma = records.empty() ? "" : ",";
            records += format(R"(%@{"id":"%@","attributes":{"scene_id":1,"file_id":"f%@"}})", comma, id, id);
            files += format(R"(%@{"id":"f%@","attributes":{"effective_uri":"http://s/%@"}})", comma, id, id);
            system->server.answer("http://s/" + id, pictureBytes(100, 100));
        }
        system->server.answer(kTriggerBundle, format(R"({"data":[%@],"included":[%@]})", records, files));
    }
    void beginLoad() { list->loadFromAPIForARKit("http://s", "app"); }
    void endLoad() {
        runMain();
        system->queues.runWorkers();
        runMain();
    }
    static Lines namesOf(const TriggerSet& triggers) {
        Lines names;
        for (const auto& trigger : triggers)
            names.push_back(trigger->name);
        return names;
    }

    std::shared_ptr<KestrinTriggerList> list;
};

} // namespace kestrin::test

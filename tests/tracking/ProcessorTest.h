#pragma once

#include "RecordingListener.h"
#include "core/config/KestrinFeatureFlags.h"
#include "support/FakePlatform.h"
#include "tracking/ARKitMarkerlessProcessor.h"
#include "tracking/KestrinTriggerList.h"

#include <functional>

namespace kestrin::test {

inline constexpr const char* kTriggerBundle =
    "http://s/api/v2/application/app/triggerbundleios?include=file&fields[file]=effective_uri";

struct ProcessorTest : PlatformTest {
    ProcessorTest() { system->files.resources["KestrinCache/Features/feature_flags.json"] = "[]"; }
    ~ProcessorTest() override { processor->detach(); }

    static void flag(const char* word) { KestrinFeatureFlags::getInstance()->put(word); }
    static void useFlags(const std::vector<const char*>& words) {
        KestrinFeatureFlags::getInstance()->clear();
        for (const char* word : words)
            flag(word);
    }
    FakeArSession& session() { return *system->worldTracking.newest(); }
    /// Set up, started, and the camera running; nothing recorded.
    void run() {
        processor->setup(480, 640);
        processor->start();
        processor->startCamera();
        listener->take();
        takeLog();
    }
    static std::shared_ptr<platform::ArFrame> frame(
        double time, const std::function<void(FakeArCamera&)>& shape = [](auto&) {}) {
        auto made = makeFrame(time);
        auto camera = std::make_shared<FakeArCamera>();
        shape(*camera);
        made->camera = camera;
        return made;
    }

    std::shared_ptr<RecordingListener> listener = std::make_shared<RecordingListener>();
    std::shared_ptr<ARKitMarkerlessProcessor> processor =
        ARKitMarkerlessProcessor::initWithDelegate(listener, nullptr);
};

/// The trigger list is on, and empty.
struct TriggerTest : ProcessorTest {
    TriggerTest() {
        useFlags({"nativetriggers", "triggerimage"});
        list = KestrinTriggerList::getInstance();
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
    void load(const Lines& ids) {
        serve(ids);
        beginLoad();
        endLoad();
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

#include "ProcessorTest.h"
#include "platform/View.h"

namespace kestrin::test {

using platform::View;

struct KestrinTriggerListTest : TriggerTest {
    void cache(const std::string& id, int width, int height) {
        const auto bytes = FakeImageCodec().encodeJpeg(makeImage(width, height), 1);
        system->files.writeDocument(id + ".jpg", bytes);
    }
    TriggerSet build(const TriggerBundle& bundle) {
        TriggerSet set;
        progress.clear();
        TriggerSetBuild::start(
            bundle, [&](float value) { progress.push_back(value); },
            [&](TriggerSet built) { set.swap(built); });
        system->queues.runWorkers();
        return set;
    }

    std::vector<float> progress;
};

TEST_F(KestrinTriggerListTest, KeepsEveryGoodTriggerOfABadBundle) {
    cache("cached", 100, 100);
    system->server.answer("http://s/new", pictureBytes(100, 101));
    system->server.answer("http://s/narrow", pictureBytes(99, 500));
    system->server.answer("http://s/broken", "no picture");
    system->server.answer(kTriggerBundle, R"({"data":[
        {"id":"cached","attributes":{"scene_id":1,"file_id":"x"}},
        {"id":"no scene","attributes":{"file_id":"x"}},
        7, null, {}, {"id":"no attributes"}, {"id":5,"attributes":{"scene_id":1,"file_id":"x"}},
        {"id":"no file","attributes":{"scene_id":1,"file_id":"unknown"}},
        {"id":"narrow","attributes":{"scene_id":1,"file_id":"narrow"}},
        {"id":"broken","attributes":{"scene_id":1,"file_id":"broken"}},
        {"id":"../../x","attributes":{"scene_id":null,"file_id":"new","width":"wide","height":1e300}},
        {"id":"good","attributes":{"scene_id":1,"file_id":"new"}}
      ],"included":[3, {"id":"y"}, {"id":"x","attributes":{"effective_uri":"http://s/x"}},
        {"id":"new","attributes":{"effective_uri":"http://s/new"}},
        {"id":"narrow","attributes":{"effective_uri":"http://s/narrow"}},
        {"id":"broken","attributes":{"effective_uri":"http://s/broken"}}]})");
    takeLog();
    beginLoad();
    endLoad();
    EXPECT_EQ(
        takeLog(),
        (Lines{format("KestrinTriggerList - Getting Marker List from %@", kTriggerBundle),
               "KestrinTriggerList - Add Trigger cached from http://s/x - size 0.200000",
               "KestrinTriggerList - Caching Trigger narrow from http://s/narrow",
               "KestrinTriggerList - Failed Loading Trigger, size too small narrow from http://s/narrow",
               "KestrinTriggerList - Caching Trigger broken from http://s/broken",
               "KestrinTriggerList - Failed Loading Trigger broken from http://s/broken",
               "KestrinTriggerList - Caching Trigger ../../x from http://s/new",
               "KestrinTriggerList - Add Trigger ../../x from http://s/new - size 0.200000",
               "KestrinTriggerList - Caching Trigger good from http://s/new",
               "KestrinTriggerList - Add Trigger good from http://s/new - size 0.200000"}));
    EXPECT_EQ(namesOf(list->getARKitTriggerSet()), (Lines{"cached", "../../x", "good"}));
}

TEST_F(KestrinTriggerListTest, GivesTriggersTheirWidths) {
    const TriggerBundle bundle{{{"wide", "", 150, 80}, {"tiny", "", 10, 20}, {"unknown", "", 0, 0}}, 4};
    for (const auto& trigger : bundle.triggers)
        cache(trigger.id, 100, 100);
    const auto widths = [&] {
        std::vector<float> found;
        for (const auto& trigger : build(bundle))
            found.push_back(float(trigger->physicalWidth));
        EXPECT_EQ(progress, (std::vector{0.25F, 0.5F, 0.75F})) << "a replaced record counts";
        return found;
    };
    EXPECT_EQ(widths(), (std::vector{0.2F, 0.2F, 0.2F}));
    for (const char* word : {"triggerlock", "triggerworldscale"}) {
        useFlags({word});
        EXPECT_EQ(widths(), (std::vector{0.15F, 0.05F, 0.05F})) << word;
    }
}

TEST_F(KestrinTriggerListTest, KeepsReferenceImagesSmallHoweverManyThereAre) {
    cache("first", 1501, 1000);
    cache("last", 1501, 1000);
    cache("long", 99, 30000); // too narrow, whatever it shrinks to
    TriggerBundle bundle{{{"first", ""}, {"long", ""}, {"last", ""}}, 3};
    for (const auto& [width, height] : {std::pair(500, 333), std::pair(57, 38)}) {
        const TriggerSet set = build(bundle);
        ASSERT_EQ(namesOf(set), (Lines{"first", "last"}));
        for (const auto& trigger : set) {
            EXPECT_EQ(trigger->image.pixelWidth(), width);
            EXPECT_EQ(trigger->image.pixelHeight(), height);
            EXPECT_EQ(trigger->image.pixels()[7], 128) << "the mean of its field";
            EXPECT_EQ(trigger->physicalSize().height, double(0.2F) * 1000 / 1501);
        }
        while (bundle.triggers.size() < 10'000) // without a picture
            bundle.triggers.insert(bundle.triggers.end() - 1, {std::to_string(bundle.triggers.size()), ""});
    }
}

TEST_F(KestrinTriggerListTest, CallsTheNewestWaiterAfterEveryLoad) {
    const auto root = platform::makeView<View>();
    list->addToParentView(root);
    const View& overlay = *root->subviews().at(0);
    std::vector<Lines> told;
    const auto tell = [&](const TriggerSet& triggers) { told.push_back(namesOf(triggers)); };
    beginLoad();
    beginLoad(); // one is running
    EXPECT_FALSE(list->isReady());
    EXPECT_TRUE(overlay.isHidden());
    list->loadForARKit([&](const TriggerSet&) { told.push_back({"replaced"}); });
    list->loadForARKit(tell);
    EXPECT_FALSE(overlay.isHidden());
    takeLog();
    runMain();
    EXPECT_EQ(takeLog(), (Lines{"KestrinTriggerList - Unable to download.",
                                "KestrinTriggerList - Ready And Complete!"}));
    EXPECT_EQ(system->server.requests().size(), 1U);
    advance(1);
    EXPECT_TRUE(overlay.isHidden());
    serve({"a", "b"});
    beginLoad();
    endLoad();
    EXPECT_EQ(told, (std::vector<Lines>{{}, {"a", "b"}}));
    list->loadForARKit(tell);
    EXPECT_EQ(told.size(), 3U) << "at once";
}

} // namespace kestrin::test

#include "tracking/KestrinTriggerList.h"
#include "TriggerServer.h"
#include "core/config/KestrinFeatureFlags.h"
#include "platform/View.h"

#include <gmock/gmock.h>

#include <thread>

namespace kestrin::test {

using platform::Image;
using platform::View;
using Lines = std::vector<std::string>;

namespace {

Lines namesOf(const TriggerSet& triggers) {
    Lines names;
    for (const auto& trigger : triggers)
        names.push_back(trigger->name);
    return names;
}

} // namespace

struct KestrinTriggerListTest : PlatformTest {
    KestrinTriggerListTest() {
        system->files.resources["KestrinCache/Features/feature_flags.json"] = "[]";
        flag("nativetriggers");
        flag("triggerimage");
        list = KestrinTriggerList::getInstance();
    }
    static void flag(const char* word) { KestrinFeatureFlags::getInstance()->put(word); }
    void load() {
        list->loadFromAPIForARKit("http://s", "app");
        runMain();
        system->queues.runWorkers();
        runMain();
    }
    void cache(const std::string& id, int width, int height) {
        const std::string bytes = pictureBytes(width, height);
        system->files.writeDocument(id + ".jpg",
                                    {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    }

    std::shared_ptr<KestrinTriggerList> list;
};

TEST_F(KestrinTriggerListTest, KeepsEveryGoodTriggerOfABadBundle) {
    cache("cached", 100, 100);
    cache("low", 500, 99);
    for (const char* name : {"new", "odd"})
        system->server.answer(std::string("http://s/") + name, pictureBytes(100, 101));
    system->server.answer("http://s/narrow", pictureBytes(99, 500));
    system->server.answer("http://s/broken", "no picture");
    system->server.answer(kTriggerBundle, R"({"data":[
        {"id":"cached","attributes":{"scene_id":1,"file_id":"x"}},
        {"id":"low","attributes":{"scene_id":1,"file_id":"x"}},
        7, null, {}, {"id":"no attributes"}, {"id":5,"attributes":{"scene_id":1,"file_id":"x"}},
        {"id":"no scene","attributes":{"file_id":"x"}},
        {"id":"no file","attributes":{"scene_id":1,"file_id":"unknown"}},
        {"id":"no address","attributes":{"scene_id":1,"file_id":"y"}},
        {"id":"twice","attributes":{"scene_id":1,"file_id":"x"}},
        {"id":"narrow","attributes":{"scene_id":1,"file_id":"narrow"}},
        {"id":"broken","attributes":{"scene_id":1,"file_id":"broken"}},
        {"id":"../../x","attributes":{"scene_id":null,"file_id":"odd","width":"wide","height":1e300}},
        {"id":"twice","attributes":{"scene_id":1,"file_id":"new"}}
      ],"included":[3, {"id":"y"}, {"id":"x","attributes":{"effective_uri":"http://s/x"}},
        {"id":"x","attributes":{"effective_uri":"http://s/second"}},
        {"id":"new","attributes":{"effective_uri":"http://s/new"}},
        {"id":"odd","attributes":{"effective_uri":"http://s/odd"}},
        {"id":"narrow","attributes":{"effective_uri":"http://s/narrow"}},
        {"id":"broken","attributes":{"effective_uri":"http://s/broken"}}]})");
    takeLog();
    load();
    EXPECT_EQ(
        takeLog(),
        (Lines{format("KestrinTriggerList - Getting Marker List from %@", kTriggerBundle),
               "KestrinTriggerList - Add Trigger cached from http://s/x - size 0.200000",
               "KestrinTriggerList - Failed Loading Trigger, size too small low from http://s/x",
               "KestrinTriggerList - Caching Trigger twice from http://s/new",
               "KestrinTriggerList - Add Trigger twice from http://s/new - size 0.200000",
               "KestrinTriggerList - Caching Trigger narrow from http://s/narrow",
               "KestrinTriggerList - Failed Loading Trigger, size too small narrow from http://s/narrow",
               "KestrinTriggerList - Caching Trigger broken from http://s/broken",
               "KestrinTriggerList - Failed Loading Trigger broken from http://s/broken",
               "KestrinTriggerList - Caching Trigger ../../x from http://s/odd",
               "KestrinTriggerList - Add Trigger ../../x from http://s/odd - size 0.200000"}));
    EXPECT_EQ(namesOf(list->getARKitTriggerSet()), (Lines{"cached", "twice", "../../x"}));
    EXPECT_THAT(system->files.documentNames(), testing::Not(testing::Contains("broken.jpg")));
    EXPECT_THAT(system->files.documentNames(), testing::Contains("twice.jpg"));
}

TEST_F(KestrinTriggerListTest, GivesTriggersTheirWidths) {
    const TriggerBundle bundle{{{"wide", "", 150, 80}, {"tiny", "", 10, 20}, {"unknown", "", 0, 0}}, 4};
    for (const auto& trigger : bundle.triggers)
        cache(trigger.id, 100, 100);
    const auto widths = [&] {
        std::vector<float> progress, found;
        TriggerSetBuild::start(
            bundle, [&](float value) { progress.push_back(value); },
            [&](const TriggerSet& set) {
                for (const auto& trigger : set)
                    found.push_back(float(trigger->physicalWidth));
            });
        system->queues.runWorkers();
        EXPECT_EQ(progress, (std::vector{0.25F, 0.5F, 0.75F})) << "a replaced record counts";
        return found;
    };
    EXPECT_EQ(widths(), (std::vector{0.2F, 0.2F, 0.2F}));
    for (const char* word : {"triggerlock", "triggerworldscale"}) {
        KestrinFeatureFlags::getInstance()->clear();
        flag(word);
        EXPECT_EQ(widths(), (std::vector{0.15F, 0.05F, 0.05F})) << word;
    }
}

TEST_F(KestrinTriggerListTest, CallsTheNewestWaiterAfterEveryLoad) {
    const auto root = platform::makeView<View>();
    list->addToParentView(root);
    const View& overlay = *root->subviews().at(0);
    std::vector<Lines> told;
    const auto tell = [&](const TriggerSet& triggers) { told.push_back(namesOf(triggers)); };
    list->loadFromAPIForARKit("http://s", "app");
    list->loadFromAPIForARKit("http://s", "app"); // one is running
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
    serveTriggers(system->server, {"a", "b"});
    load();
    system->server.answer(kTriggerBundle, "[]"); // no error, but nothing in it either
    load();
    EXPECT_EQ(told, (std::vector<Lines>{{}, {"a", "b"}, {}}));
    list->loadForARKit(tell);
    EXPECT_EQ(told.size(), 4U) << "at once";
}

TEST_F(KestrinTriggerListTest, NeedsItsFlagsAndAnAbleSystem) {
    struct Case {
        double level;
        Lines flags;
        bool wanted, supported;
    };
    const Case cases[] = {{12, {"nativetriggers", "snap"}, true, true},
                          {11.2, {"nativetriggers", "triggerimage"}, true, false},
                          {12, {"nativetriggers"}, false, false},
                          {12, {"snap", "triggerimage"}, false, false}};
    for (const Case& c : cases) {
        system->level = c.level;
        KestrinFeatureFlags::getInstance()->clear();
        for (const auto& word : c.flags)
            flag(word.c_str());
        list->resync();
        EXPECT_EQ(KestrinTriggerList::wantsToSupport(), c.wanted);
        EXPECT_EQ(KestrinTriggerList::isSupported(), c.supported);
    }
    takeLog();
    list->loadFromAPIForARKit("http://s", "app");
    EXPECT_EQ(takeLog(), Lines{"KestrinTriggerList - Skipping Marker Loading since nativetriggers Feature "
                               "Flag is not set."});
    EXPECT_TRUE(list->isReady());
}

TEST_F(KestrinTriggerListTest, TurnsImagesClockwise) {
    const Image twoPixels(2, 1, {1, 1, 1, 255, 2, 2, 2, 255});
    const Image turned = KestrinTriggerList::imageRotatedByDegrees(twoPixels, 90);
    ASSERT_EQ(turned.size(), (platform::Size{1, 2}));
    EXPECT_EQ(turned.pixels()[0], 1) << "the left end is at the top";
    EXPECT_EQ(KestrinTriggerList::imageRotatedByDegrees(makeImage(100, 100), 45).pixelWidth(), 141);
    EXPECT_FALSE(KestrinTriggerList::imageRotatedByDegrees({}, 45).isValid());
}

// Pictures come out of order from several workers, while others ask for the set.
TEST_F(KestrinTriggerListTest, KeepsTheOrderOfTriggersReadSideBySide) {
    Lines ids;
    for (int i = 0; i < 60; ++i)
        ids.push_back(std::to_string(i));
    serveTriggers(system->server, ids);
    for (int i = 0; i < 60; i += 1 + i % 3)
        cache(ids[std::size_t(i)], 100 + i * 3 % 70, 100);
    system->queues.startWorkerThreads(3);
    std::size_t told = 0;
    for (int round = 0; round < 5; ++round) {
        list->loadFromAPIForARKit("http://s", "app");
        std::thread other([&] {
            for (int i = 0; i < 50; ++i)
                list->getARKitTriggerSet();
            list->loadForARKit([](const TriggerSet&) {});
        });
        list->loadForARKit([&](const TriggerSet& triggers) { told = triggers.size(); });
        runMain();
        system->queues.waitForWorkers();
        other.join();
        runMain();
        EXPECT_TRUE(list->isReady());
        EXPECT_EQ(namesOf(list->getARKitTriggerSet()), ids);
    }
    list->loadForARKit([&](const TriggerSet& triggers) { told = triggers.size(); });
    EXPECT_EQ(told, 60U);
}

} // namespace kestrin::test

#include "services/Reachability.h"
#include "core/config/Deployment.h"
#include "services/ConnectionChecker.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using namespace kestrin::platform;
using testing::ElementsAre;

namespace {

struct ReachabilityTest : test::PlatformTest {
    test::FakeReachability::Way &internet = system->network.addresses[kInternet],
                                &host = system->network.hosts[Deployment::kPublicHost];

    void runQueues() {
        system->queues.runWorkers();
        runMain();
    }
};

} // namespace

TEST_F(ReachabilityTest, ReadsItsFlags) {
    const auto path = Reachability::reachabilityForInternetConnection();
    system->files.translations["No Connection"] = "Offline";
    struct Case {
        std::optional<ReachabilityFlags> flags;
        bool usesCellular;
        int status;
        const char *text, *letters;
    };
    const Case cases[] = {{kReachable | kTransientConnection, true, 2, "WiFi", "-R -t-----"},
                          {kReachable | kIsCellular, true, 1, "Cellular", "WR -------"},
                          {kReachable | kIsCellular, false, 0, "Offline", "WR -------"},
                          {kConnectionRequired | kConnectionOnDemand, true, 0, "Offline", "-- c---D--"},
                          {0x7003F, true, 0, "Offline", "WR ctiCDld"},
                          {std::nullopt, true, 0, "Offline", "-- -------"}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.letters);
        internet.flags = each.flags;
        path->setReachableOnWWAN(each.usesCellular);
        EXPECT_EQ(path->currentReachabilityStatus(), each.status);
        EXPECT_EQ(path->currentReachabilityString(), each.text);
        EXPECT_EQ(path->currentReachabilityFlags(), each.letters);
    }
    EXPECT_EQ(Reachability::reachabilityWithHostName(""), nullptr);
}

TEST_F(ReachabilityTest, NotifiesOfChangesOnceUntilStopped) {
    auto path = Reachability::reachabilityForInternetConnection();
    std::vector<std::string> told;
    system->app.center.addObserver(this, kReachabilityChangedNotification, [&](const Notification& note) {
        told.push_back(note.sender == path ? "posted" : "from another");
    });
    path->setReachableBlock([&](Reachability& sender) {
        told.push_back(&sender == path.get() && !system->queues.isMain() ? "reachable" : "wrong");
    });
    internet.canStart = false;
    EXPECT_FALSE(path->startNotifier());
    internet.canStart = true;
    EXPECT_TRUE(path->startNotifier() && path->startNotifier());
    EXPECT_EQ(internet.starts, 1);
    runQueues();
    internet.become(kReachable | kTransientConnection | kConnectionRequired);
    runQueues();
    EXPECT_THAT(told, ElementsAre("reachable", "posted", "posted")) << "without a block for the other";
    path.reset();
    EXPECT_FALSE(internet.changed) << "the notifier ends with its object";
    runQueues();
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(ReachabilityTest, ChecksTheConnection) {
    EXPECT_TRUE(ConnectionChecker::checkConnection());
    host.flags = 0;
    EXPECT_FALSE(ConnectionChecker::checkConnection());
    std::swap(host.flags, internet.flags);
    EXPECT_FALSE(ConnectionChecker::checkConnection());

    std::string answers;
    const auto say = [&](char answer) {
        return [&, answer] { answers += system->queues.isMain() ? answer : '!'; };
    };
    host.canStart = false;
    ConnectionChecker::checkConnectionWithCallback(say('a'), say('b'));
    EXPECT_EQ(answers, "");
    runQueues();
    host.canStart = true;
    ConnectionChecker::checkConnectionWithCallback(say('c'), say('d'));
    runQueues();
    ConnectionChecker::checkConnectionWithCallback(say('e'), say('f'));
    runQueues();
    EXPECT_EQ(answers, "bc") << "nothing has changed for the last";
    host.become(0);
    host.become(kReachable);
    runQueues();
    EXPECT_EQ(answers, "bcfe");
}

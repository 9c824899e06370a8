#include "services/Reachability.h"
#include "core/config/Deployment.h"
#include "services/ConnectionChecker.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

#include <tuple>

using namespace kestrin;
using namespace kestrin::platform;
using testing::ElementsAre;
using testing::MatchesRegex;

namespace {

struct ReachabilityTest : test::PlatformTest {
    using Way = test::FakeReachability::Way;

    Way& publicHost() { return *system->network.hosts[Deployment::kPublicHost]; }
    Way& internet() { return *system->network.addresses[kInternet]; }
    void runQueues() {
        system->queues.runWorkers();
        runMain();
    }
    /// What the callbacks of all checks have said since the last call.
    std::string takeAnswers() { return std::exchange(m_answers, {}); }
    void check(char success, char failure) {
        ConnectionChecker::checkConnectionWithCallback([this, success] { say(success); },
                                                       [this, failure] { say(failure); });
    }
    void say(char answer) {
        EXPECT_TRUE(system->queues.isMain());
        m_answers += answer;
    }

  private:
    std::string m_answers;
};

} // namespace

TEST_F(ReachabilityTest, ReadsItsFlags) {
    const auto network = Reachability::reachabilityForInternetConnection();
    system->files.translations["No Connection"] = "Keine Verbindung";
    constexpr auto kAll = kTransientConnection | kReachable | kConnectionRequired | kConnectionOnTraffic |
                          kInterventionRequired | kConnectionOnDemand | kIsLocalAddress | kIsDirect |
                          kIsCellular;
    struct Case {
        std::optional<ReachabilityFlags> flags;
        bool usesCellular;
        int status;
        const char *text, *letters;
        std::tuple<bool, bool, bool, bool, bool> is; ///< WWAN, WiFi, required, on demand, intervention
    };
    const Case cases[] = {
        {kReachable, true, 2, "WiFi", "-R -------", {0, 1, 0, 0, 0}},
        {kReachable | kIsCellular, true, 1, "Cellular", "WR -------", {1, 0, 0, 0, 0}},
        {kReachable | kIsCellular, false, 0, "Keine Verbindung", "WR -------", {1, 0, 0, 0, 0}},
        {kReachable | kTransientConnection, true, 2, "WiFi", "-R -t-----", {0, 1, 0, 0, 0}},
        {kReachable | kConnectionRequired | kIsDirect, true, 2, "WiFi", "-R c-----d", {0, 1, 1, 0, 0}},
        {kConnectionRequired | kConnectionOnDemand,
         true,
         0,
         "Keine Verbindung",
         "-- c---D--",
         {0, 0, 1, 1, 0}},
        {kConnectionOnTraffic | kInterventionRequired,
         true,
         0,
         "Keine Verbindung",
         "-- --iC---",
         {0, 0, 0, 0, 0}},
        {kAll, true, 0, "Keine Verbindung", "WR ctiCDld", {1, 0, 1, 1, 1}},
        {std::nullopt, true, 0, "Keine Verbindung", "-- -------", {0, 0, 0, 0, 0}}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.letters);
        internet().flags = each.flags;
        network->setReachableOnWWAN(each.usesCellular);
        EXPECT_EQ(network->currentReachabilityStatus(), each.status);
        EXPECT_EQ(network->isReachable(), each.status != 0);
        EXPECT_EQ(network->currentReachabilityString(), each.text);
        EXPECT_EQ(network->currentReachabilityFlags(), each.letters);
        EXPECT_EQ(std::tuple(network->isReachableViaWWAN(), network->isReachableViaWiFi(),
                             network->connectionRequired(), network->isConnectionOnDemand(),
                             network->isInterventionRequired()),
                  each.is);
    }
    EXPECT_THAT(network->description(), MatchesRegex("<Reachability: 0x[0-9a-f]+ \\(-- -------\\)>"));
    EXPECT_EQ(Reachability::reachabilityWithHostName(""), nullptr);
}

TEST_F(ReachabilityTest, NotifiesOfChangesOnceUntilStopped) {
    auto path = Reachability::reachabilityForLocalWiFi();
    Way& way = *system->network.addresses[kLocalWiFi];
    std::vector<std::string> told;
    system->app.center.addObserver(this, kReachabilityChangedNotification, [&](const Notification& note) {
        told.push_back(note.sender == path ? "posted" : "from another");
    });
    path->setReachableBlock([&](Reachability& sender) {
        EXPECT_FALSE(system->queues.isMain());
        told.push_back(&sender == path.get() ? "reachable" : "another");
    });
    way.canStart = false;
    EXPECT_FALSE(path->startNotifier());
    way.canStart = true;
    EXPECT_TRUE(path->startNotifier());
    EXPECT_TRUE(path->startNotifier());
    EXPECT_EQ(way.starts, 1);
    runQueues();
    way.become(kReachable | kTransientConnection | kConnectionRequired);
    runQueues();
    EXPECT_THAT(told, ElementsAre("reachable", "posted", "posted")) << "without a block for the other";
    path->stopNotifier();
    EXPECT_FALSE(way.changed);
    EXPECT_TRUE(path->startNotifier());
    way.become(kReachable);
    path.reset();
    EXPECT_FALSE(way.changed) << "the notifier ends with its object";
    runQueues();
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(ReachabilityTest, ChecksTheConnection) {
    EXPECT_TRUE(ConnectionChecker::checkConnection());
    publicHost().flags = 0;
    EXPECT_FALSE(ConnectionChecker::checkConnection());
    std::swap(publicHost().flags, internet().flags);
    EXPECT_FALSE(ConnectionChecker::checkConnection());

    publicHost().canStart = false;
    check('a', 'b');
    EXPECT_EQ(takeAnswers(), "");
    runQueues();
    EXPECT_EQ(takeAnswers(), "b");
    publicHost().canStart = true;
    check('c', 'd');
    runQueues();
    EXPECT_EQ(takeAnswers(), "c");
    check('e', 'f');
    runQueues();
    EXPECT_EQ(takeAnswers(), "") << "nothing has changed";
    publicHost().become(0);
    publicHost().become(kReachable);
    runQueues();
    EXPECT_EQ(takeAnswers(), "fe");
    ConnectionChecker::showConnectionMessage();
    runMain();
    EXPECT_EQ(system->app.alerts.at(0).title, "Error");
}

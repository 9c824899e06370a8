#include "NetworkNamespace.h"
#include "linux/reachability/NetlinkReachability.h"
#include "linux/toolkit/ThreadQueue.h"
#include "support/FakeLog.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <iterator>
#include <thread>

using namespace kestrin;
using namespace kestrin::platform;
using test::NetworkNamespace;
using testing::ElementsAre;
using testing::Optional;

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr Ipv4Address kFar{10, 1, 0, 9};
constexpr Ipv4Address kNear{10, 0, 0, 9};
constexpr Ipv4Address kOwn{10, 0, 0, 2};
constexpr const char* kRoute = "route add 10.1.0.0/16 via 10.0.0.1 dev net0";

/// Keeps the flags that a target tells.
class Told {
  public:
    Told(ReachabilityTarget& target, SerialQueue& queue) {
        target.start(queue, [kept = m_kept](ReachabilityFlags flags) {
            const std::lock_guard lock(kept->mutex);
            kept->all.push_back(flags);
            kept->changed.notify_all();
        });
    }
    /// Whether the newest become these; what came on the way is forgotten.
    bool become(ReachabilityFlags flags) {
        std::unique_lock lock(m_kept->mutex);
        const auto are = [&] { return !m_kept->all.empty() && m_kept->all.back() == flags; };
        const bool came = m_kept->changed.wait_for(lock, std::chrono::seconds(20), are);
        m_kept->all.clear();
        return came;
    }
    std::vector<ReachabilityFlags> all() const {
        const std::lock_guard lock(m_kept->mutex);
        return m_kept->all;
    }

  private:
    struct Kept {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<ReachabilityFlags> all;
    };
    const std::shared_ptr<Kept> m_kept = std::make_shared<Kept>(); // the queue may still use it afterwards
};

/// How often the thread of that name has gone to sleep.
long sleepsOf(const std::string& name) {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream status(task.path() / "status");
        const std::string text(std::istreambuf_iterator<char>(status), {});
        const std::string_view key = "\nvoluntary_ctxt_switches:";
        if (text.starts_with("Name:\t" + name + '\n'))
            return std::stol(text.substr(text.find(key) + key.size()));
    }
    return -1;
}

/// A network of one link, net0, with a neighbour at its other end.
class LinuxReachabilityTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!NetworkNamespace::enter())
            GTEST_SKIP() << "needs root, for a network of its own";
        ASSERT_TRUE(NetworkNamespace::ip("link set lo up\n"
                                         "link add net0 type veth peer name peer0\n"
                                         "addr add 10.0.0.2/24 dev net0\n"
                                         "link set peer0 up\n"
                                         "link set net0 up\n" +
                                         std::string(kRoute)));
        std::filesystem::create_directories(link());
    }
    std::filesystem::path link() const { return m_sysfs / "class/net/net0"; }
    ReachabilityFlags flagsOf(const IpAddress& address) {
        return targets.makeForAddress(address)->flags().value_or(~0U);
    }
    /// The shortest of some times from a change to its being told.
    milliseconds fastest(Told& told, const std::string& change, ReachabilityFlags then,
                         const std::string& undo, ReachabilityFlags before) {
        milliseconds best = milliseconds::max();
        for (int round = 0; round < 5; ++round) {
            const auto began = Clock::now();
            EXPECT_TRUE(NetworkNamespace::ip(change));
            EXPECT_TRUE(told.become(then)) << change;
            best = std::min(best, std::chrono::duration_cast<milliseconds>(Clock::now() - began));
            EXPECT_TRUE(NetworkNamespace::ip(undo));
            EXPECT_TRUE(told.become(before)) << undo;
        }
        return best;
    }

    const test::TemporaryFolder m_sysfs;
    gtk::NetlinkReachability targets{{gtk::HostMap::parse("mapped.example=10.1.0.9:443"), m_sysfs.path()}};
    gtk::ThreadQueue queue{"queue", std::make_shared<test::FakeLog>()};
};

} // namespace

TEST_F(LinuxReachabilityTest, TellsTheWayToAnAddress) {
    EXPECT_EQ(flagsOf(kFar), kReachable);
    EXPECT_EQ(flagsOf(kNear), kReachable | kIsDirect);
    EXPECT_EQ(flagsOf(kOwn), kReachable | kIsDirect | kIsLocalAddress);
    EXPECT_EQ(flagsOf(Ipv4Address{10, 2, 0, 1}), 0U);
    EXPECT_EQ(flagsOf(kInternet), 0U);
    ASSERT_TRUE(NetworkNamespace::ip("route add unreachable 10.1.0.9\n"
                                     "route add default via 10.0.0.1"));
    EXPECT_EQ(flagsOf(kFar), 0U);
    EXPECT_EQ(flagsOf(kInternet), kReachable);
    ASSERT_TRUE(NetworkNamespace::ip("route del default\n"
                                     "addr add fd00::2/64 dev net0 nodad\n"
                                     "route add default via fd00::1"));
    EXPECT_EQ(flagsOf(kInternet), kReachable) << "by the other protocol";

    EXPECT_EQ(flagsOf(kLocalWiFi), 0U);
    std::filesystem::create_directory(link() / "phy80211");
    EXPECT_EQ(flagsOf(kLocalWiFi), kReachable | kIsDirect);
    std::ofstream(link() / "uevent") << "DEVTYPE=wwan\nINTERFACE=net0\n";
    EXPECT_EQ(flagsOf(kNear), kReachable | kIsDirect | kIsCellular);
    ASSERT_TRUE(NetworkNamespace::ip("link set peer0 down"));
    for (const Ipv4Address& address : {kNear, kInternet, kLocalWiFi})
        EXPECT_EQ(flagsOf(address), 0U) << "no carrier, though the routes are there";
}

TEST_F(LinuxReachabilityTest, SeesEachChangeAtOnce) {
    const auto target = targets.makeForAddress(kFar);
    Told told(*target, queue);
    EXPECT_TRUE(told.become(kReachable)) << "the present state first";
    const auto down = fastest(told, "link set peer0 down", 0, "link set peer0 up", kReachable);
    const auto removed = fastest(told, "route del 10.1.0.0/16", 0, kRoute, kReachable);
    ASSERT_TRUE(NetworkNamespace::ip("route del 10.1.0.0/16"));
    EXPECT_TRUE(told.become(0));
    const auto back = fastest(told, kRoute, kReachable, "route del 10.1.0.0/16", 0);
    for (const auto time : {down, removed, back})
        EXPECT_LE(time, milliseconds(200));
    RecordProperty("milliseconds",
                   testing::PrintToString(std::vector{down.count(), removed.count(), back.count()}));
    target->stop();
}

TEST_F(LinuxReachabilityTest, FoldsBurstsAndSleepsOtherwise) {
    const auto target = targets.makeForAddress(kFar);
    Told told(*target, queue);
    EXPECT_TRUE(told.become(kReachable));
    std::string burst = "link set peer0 down\n";
    for (int i = 0; i < 200; ++i)
        burst += "route add 10.9." + std::to_string(i) + ".0/24 dev lo\n";
    ASSERT_TRUE(NetworkNamespace::ip(burst));
    std::this_thread::sleep_for(milliseconds(300));
    EXPECT_THAT(told.all(), ElementsAre(0U));
    const long before = sleepsOf("kestrin routes");
    EXPECT_GT(before, 0);
    std::this_thread::sleep_for(milliseconds(500));
    EXPECT_EQ(sleepsOf("kestrin routes"), before);
    target->stop();
    ASSERT_TRUE(NetworkNamespace::ip("link set peer0 up"));
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_EQ(told.all().size(), 1U) << "nothing after the stop";
}

TEST_F(LinuxReachabilityTest, LooksNamesUp) {
    const test::TemporaryFolder files;
    const auto hosts = files.path() / "hosts";
    std::ofstream(hosts) << "10.2.0.1 two.example\n10.1.0.9 two.example\n";
    ASSERT_TRUE(NetworkNamespace::run("mount --bind " + hosts.string() + " /etc/hosts"));
    for (const char* host : {"two.example", "mapped.example", "10.1.0.9"}) {
        const auto target = targets.makeForHost(host);
        Told told(*target, queue);
        EXPECT_TRUE(told.become(kReachable)) << host;
        ASSERT_TRUE(NetworkNamespace::ip("link set peer0 down"));
        EXPECT_TRUE(told.become(0));
        ASSERT_TRUE(NetworkNamespace::ip("link set peer0 up"));
        EXPECT_TRUE(told.become(kReachable));
        EXPECT_EQ(target->flags(), kReachable);
        target->stop();
    }
    const auto unknown = targets.makeForHost("nowhere.example");
    Told told(*unknown, queue);
    EXPECT_TRUE(told.become(0));
    std::ofstream(hosts) << "10.0.0.9 nowhere.example\n";
    EXPECT_TRUE(told.become(kReachable | kIsDirect)) << "asked again after a while";
    unknown->stop();

    std::ofstream(files / "resolv.conf") << "nameserver 10.1.0.8\n"; // which does not answer
    ASSERT_TRUE(
        NetworkNamespace::run("mount --bind " + (files / "resolv.conf").string() + " /etc/resolv.conf"));
    const auto began = Clock::now();
    std::make_unique<gtk::NetlinkReachability>()->makeForHost("silence.example")->flags();
    EXPECT_LT(Clock::now() - began, std::chrono::seconds(3)) << "nobody waits for a name";
    for (const char* refused : {"", "a b", "\xC3\xBC"})
        EXPECT_EQ(targets.makeForHost(refused), nullptr);
    EXPECT_EQ(targets.makeForHost(std::string(300, 'a')), nullptr);
}

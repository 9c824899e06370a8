#include "linux/reachability/NetlinkReachability.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sched.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <map>
#include <mutex>
#include <thread>

using namespace kestrin;
using namespace kestrin::platform;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::Each;
using testing::ElementsAre;
using testing::Le;
using testing::Pair;
using Clock = std::chrono::steady_clock;

namespace {

constexpr Ipv4Address kFar{10, 1, 0, 9}, kNear{10, 0, 0, 9}, kOwn{10, 0, 0, 2}, kNowhere{10, 2, 0, 1};

bool run(const std::string& command) { return std::system(command.c_str()) == 0; }
/// One command a line, in one process.
bool ip(const std::string& lines) { return run("ip -batch - <<'END'\n" + lines + "\nEND"); }

/// Runs what a target posts, where it posts it, and keeps the flags that it tells.
class Told : public SerialQueue {
  public:
    explicit Told(ReachabilityTarget& target) : m_target(target) {
        m_target.start(*this, [this](ReachabilityFlags flags) {
            const std::lock_guard lock(m_mutex);
            m_all.push_back(flags);
            m_changed.notify_all();
        });
    }
    ~Told() override { m_target.stop(); }
    void async(Task task) override { task(); }
    /// Whether the newest become these; forgets what came.
    bool become(ReachabilityFlags flags) {
        std::unique_lock lock(m_mutex);
        const auto are = [&] { return !m_all.empty() && m_all.back() == flags; };
        const bool came = m_changed.wait_for(lock, seconds(20), are);
        m_all.clear();
        return came;
    }
    std::vector<ReachabilityFlags> all() {
        const std::lock_guard lock(m_mutex);
        return m_all;
    }

  private:
    ReachabilityTarget& m_target;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<ReachabilityFlags> m_all;
};

/// A network of its own with one link, net0, and a neighbour at the link's other end.
struct LinuxReachabilityTest : testing::Test {
    void SetUp() override {
        if (unshare(CLONE_NEWNET | CLONE_NEWNS) != 0 || !run("mount --make-rprivate /"))
            GTEST_SKIP() << "needs root, for a network of its own";
        ASSERT_TRUE(
            ip("link set lo up\nlink add net0 type veth peer name peer0\naddr add 10.0.0.2/24 dev net0\n"
               "link set peer0 up\nlink set net0 up\nroute add 10.1.0.0/16 via 10.0.0.1"));
        files.write("class/net/net0/type", "1");
    }
    ReachabilityFlags flagsOf(const IpAddress& address) {
        return targets.makeForAddress(address)->flags().value_or(~0U);
    }
    /// Puts a file in the place of one of the system's, in a copy of /etc that only this process sees.
    void replace(const std::string& name, const std::string& text) {
        const std::string etc = files / "etc";
        EXPECT_TRUE(std::filesystem::exists(etc) ||
                    run("cp -a /etc " + etc + " && mount --bind " + etc + " /etc"));
        std::filesystem::remove(files / name); // it may be a link that leads out of the copy
        files.write(name, text);
    }

    const test::TemporaryFolder files;
    gtk::NetlinkReachability targets{{gtk::HostMap::parse("mapped.example=10.1.0.9:443"), files.path()}};
};

} // namespace

TEST_F(LinuxReachabilityTest, TellsTheWayToAnAddress) {
    EXPECT_EQ(flagsOf(kFar), kReachable);
    EXPECT_EQ(flagsOf(kNear), kReachable | kIsDirect);
    EXPECT_EQ(flagsOf(kOwn), kReachable | kIsDirect | kIsLocalAddress);
    EXPECT_EQ(flagsOf(kNowhere) | flagsOf(kInternet) | flagsOf(kLocalWiFi), 0U);
    ASSERT_TRUE(ip("route add unreachable 10.1.0.9\nroute add default via 10.0.0.1"));
    EXPECT_EQ(flagsOf(kFar), 0U);
    EXPECT_EQ(flagsOf(kInternet), kReachable);
    files.write("class/net/net0/phy80211/name", "");
    EXPECT_EQ(flagsOf(kLocalWiFi), kReachable | kIsDirect);
    files.write("class/net/net0/uevent", "DEVTYPE=wwan\nINTERFACE=net0\n");
    EXPECT_EQ(flagsOf(kNear), kReachable | kIsDirect | kIsCellular);
    ASSERT_TRUE(ip("link set peer0 down"));
    EXPECT_EQ(flagsOf(kNear) | flagsOf(kInternet) | flagsOf(kLocalWiFi), 0U)
        << "no carrier; the routes are there";
}

TEST_F(LinuxReachabilityTest, SeesEachChangeAtOnce) {
    const auto target = targets.makeForAddress(kFar);
    Told told(*target);
    EXPECT_TRUE(told.become(kReachable)) << "the present state first";
    const std::vector<std::pair<std::string, ReachabilityFlags>> changes{
        {"link set peer0 down", 0},
        {"link set peer0 up", kReachable},
        {"route del 10.1.0.0/16", 0},
        {"route add 10.1.0.0/16 via 10.0.0.1", kReachable}};
    std::map<std::string, long> fastest; // in milliseconds, as other programs may hold one up
    for (int round = 0; round < 5; ++round)
        for (const auto& [change, flags] : changes) {
            const auto began = Clock::now();
            EXPECT_TRUE(ip(change) && told.become(flags)) << change;
            const long took = std::chrono::duration_cast<milliseconds>(Clock::now() - began).count();
            auto& best = fastest.try_emplace(change, took).first->second;
            best = std::min(best, took);
        }
    EXPECT_THAT(fastest, Each(Pair(testing::_, Le(200))));
}

TEST_F(LinuxReachabilityTest, FoldsBursts) {
    const auto target = targets.makeForAddress(kFar);
    Told told(*target);
    EXPECT_TRUE(told.become(kReachable));
    std::string burst = "link set peer0 down";
    for (int i = 0; i < 200; ++i)
        burst += "\nroute add 10.9." + std::to_string(i) + ".0/24 dev lo";
    ASSERT_TRUE(ip(burst));
    std::this_thread::sleep_for(seconds(1));
    EXPECT_THAT(told.all(), ElementsAre(0U));
    target->stop();
    ASSERT_TRUE(ip("link set peer0 up"));
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_EQ(told.all().size(), 1U) << "nothing after the stop";
}

TEST_F(LinuxReachabilityTest, LooksNamesUp) {
    replace("etc/hosts", "10.2.0.1 two.example\n10.1.0.9 two.example\n");
    for (const char* host : {"two.example", "mapped.example", "10.1.0.9"}) {
        const auto target = targets.makeForHost(host);
        Told told(*target);
        EXPECT_TRUE(told.become(kReachable)) << host;
        EXPECT_TRUE(ip("link set peer0 down") && told.become(0));
        EXPECT_TRUE(ip("link set peer0 up") && told.become(kReachable));
        EXPECT_EQ(target->flags(), kReachable);
    }
    const auto unknown = targets.makeForHost("nowhere.example");
    Told told(*unknown);
    EXPECT_TRUE(told.become(0));
    files.write("etc/hosts", "10.0.0.9 nowhere.example\n");
    EXPECT_TRUE(told.become(kReachable | kIsDirect)) << "asked again after a while";
    replace("etc/resolv.conf", "nameserver 10.1.0.8\n"); // which does not answer
    const auto began = Clock::now();
    std::make_unique<gtk::NetlinkReachability>()->makeForHost("silence.example")->flags();
    EXPECT_LT(Clock::now() - began, seconds(3)) << "nobody waits for a name";
}

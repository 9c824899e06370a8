#include "platform/NotificationCenter.h"

#include <gmock/gmock.h>

using kestrin::platform::NotificationCenter;
using testing::ElementsAre;

namespace {

struct NotificationCenterTest : testing::Test {
    NotificationCenter center;
    std::vector<std::string> told;
    NotificationCenter::Callback tell(const std::string& who) {
        return [this, who](const std::string&) { told.push_back(who); };
    }
    int one = 0, two = 0;
};

} // namespace

TEST_F(NotificationCenterTest, TellsThoseOfTheNameInOrderUntilRemoved) {
    center.addObserver(&two, "a", tell("two"));
    center.addObserver(&one, "a", tell("one"));
    center.addObserver(&one, "b", tell("one of b"));
    center.post("a");
    EXPECT_THAT(told, ElementsAre("two", "one"));

    told.clear();
    center.removeObserver(&one, "a");
    center.post("a");
    center.post("b");
    EXPECT_THAT(told, ElementsAre("two", "one of b"));
}

TEST_F(NotificationCenterTest, ObserversMayComeAndGoMeanwhile) {
    center.addObserver(&one, "a", [this](const std::string&) {
        told.push_back("one");
        center.removeObserver(&two, "a");
        center.removeObserver(&one, "a");
        center.addObserver(this, "a", tell("newcomer"));
    });
    center.addObserver(&two, "a", tell("two"));
    center.post("a");
    EXPECT_THAT(told, ElementsAre("one"));
    center.post("a");
    EXPECT_THAT(told, ElementsAre("one", "newcomer"));
}

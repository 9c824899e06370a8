#include "platform/NotificationCenter.h"

#include <gmock/gmock.h>

using kestrin::platform::NotificationCenter;
using testing::ElementsAre;

namespace {

struct NotificationCenterTest : testing::Test {
    NotificationCenter center;
    std::vector<std::string> told;
    NotificationCenter::Callback tell(const std::string& who) {
        return [this, who](const auto&) { told.push_back(who); };
    }
    int one = 0, two = 0, three = 0;
};

} // namespace

TEST_F(NotificationCenterTest, ObserversOfTheNameAreToldInOrderAndMayComeAndGoMeanwhile) {
    center.addObserver(&one, "a", [this](const auto&) {
        told.push_back("one");
        center.removeObserver(&two, "a");
        center.addObserver(this, "a", tell("newcomer"));
    });
    center.addObserver(&two, "a", tell("two"));
    center.addObserver(&three, "a", tell("three"));
    center.addObserver(&two, "b", tell("two of b"));
    center.post("a");
    EXPECT_THAT(told, ElementsAre("one", "three"));
    center.post("a");
    center.post("b");
    EXPECT_THAT(told, ElementsAre("one", "three", "one", "three", "newcomer", "two of b"));
}

#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin::platform;
using kestrin::test::offMain;
using testing::ElementsAre;

namespace {

struct ViewTest : kestrin::test::PlatformTest {
    std::shared_ptr<View> parent = makeView<View>();
    std::shared_ptr<View> child = makeView<View>();
    std::vector<bool> ends;
    std::function<void(bool)> noteEnd = [this](bool finished) { ends.push_back(finished); };
};

} // namespace

TEST_F(ViewTest, OnlyANewerFadeInterrupts) {
    child->animateOpacity(0, 0.3, noteEnd);
    advance(0.1);
    child->setOpacity(1);
    parent->addSubview(child);
    EXPECT_TRUE(ends.empty());
    child->animateOpacity(1, 0.3, noteEnd);
    EXPECT_THAT(ends, ElementsAre(false));
    advance(0.4);
    EXPECT_THAT(ends, ElementsAre(false, true));
    EXPECT_EQ(child->opacity(), 1);

    child->animateOpacity(0, 0.1, [this](bool) { child->animateOpacity(1, 0.1, noteEnd); });
    advance(0.3);
    EXPECT_EQ(child->opacity(), 1) << "a fade could not start another from its end";
}

TEST_F(ViewTest, TheLastReleaseElsewhereDestroysOnMain) {
    struct Witness : View {
        explicit Witness(std::thread::id& destroyed) : destroyedOn(destroyed) {}
        ~Witness() override { destroyedOn = std::this_thread::get_id(); }
        std::thread::id& destroyedOn;
    };
    std::thread::id destroyedOn;
    auto view = makeView<Witness>(destroyedOn);
    offMain([&] { view.reset(); });
    EXPECT_EQ(destroyedOn, std::thread::id());
    runMain();
    EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

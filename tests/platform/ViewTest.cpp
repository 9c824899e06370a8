#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin::platform;
using kestrin::test::offMain;
using kestrin::test::recorded;
using testing::DoubleNear;
using testing::ElementsAre;

namespace {

struct ViewTest : kestrin::test::PlatformTest {
    std::shared_ptr<View> parent = makeView<View>();
    std::shared_ptr<View> child = makeView<View>();
    std::vector<bool> ends;
    std::function<void(bool)> noteEnd = [this](bool finished) { ends.push_back(finished); };
};

} // namespace

TEST_F(ViewTest, AddingMovesToTheTopAndOutOfTheFormerParent) {
    const auto other = makeView<View>(), formerParent = makeView<View>();
    formerParent->addSubview(child);
    for (const auto& added : {child, other, child, std::shared_ptr<View>(), parent})
        parent->addSubview(added);
    EXPECT_THAT(formerParent->subviews(), testing::IsEmpty());
    EXPECT_THAT(recorded(*parent).subviews, ElementsAre(&other->peer(), &child->peer()));
    child->removeFromSuperview();
    EXPECT_THAT(recorded(*parent).subviews, ElementsAre(&other->peer()));
}

TEST_F(ViewTest, FlexibleSubviewsFollowBySizeDifference) {
    const auto fixed = makeView<View>();
    parent->setFrame({{5, 5}, {100, 200}});
    child->setFrame({{10, 10}, {80, 180}});
    child->setResizing(View::kFlexibleWidth | View::kFlexibleHeight);
    fixed->setFrame({{1, 2}, {3, 4}});
    parent->addSubview(child);
    parent->addSubview(fixed);
    parent->toolkitResized({150, 190});
    EXPECT_EQ(recorded(*child).frame, (Rect{{10, 10}, {130, 170}}));
    EXPECT_EQ(fixed->frame(), (Rect{{1, 2}, {3, 4}}));
}

TEST_F(ViewTest, AFadeRunsFromThePresentOpacityByTheClock) {
    child->setOpacity(0.8);
    child->animateOpacity(0, 0.4, noteEnd);
    advance(0.2);
    EXPECT_THAT(recorded(*child).opacity, DoubleNear(0.4, 0.04));
    EXPECT_TRUE(ends.empty());
    advance(0.25);
    EXPECT_EQ(child->opacity(), 0);
    EXPECT_THAT(ends, ElementsAre(true));
}

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

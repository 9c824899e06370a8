#include "support/FakePlatform.h"

#include <gmock/gmock.h>

#include <cmath>

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
    parent->addSubview(child);
    parent->addSubview(other);
    EXPECT_THAT(formerParent->subviews(), testing::IsEmpty());
    EXPECT_THAT(recorded(*parent).subviews, ElementsAre(&child->peer(), &other->peer()));

    parent->addSubview(child);
    EXPECT_THAT(recorded(*parent).subviews, ElementsAre(&other->peer(), &child->peer()));
    EXPECT_EQ(child->superview(), parent);

    child->removeFromSuperview();
    child->removeFromSuperview();
    EXPECT_THAT(recorded(*parent).subviews, ElementsAre(&other->peer()));
    EXPECT_EQ(child->superview(), nullptr);

    parent->addSubview(nullptr);
    parent->addSubview(parent);
    EXPECT_THAT(parent->subviews(), ElementsAre(other));
}

TEST_F(ViewTest, FlexibleSubviewsFollowBySizeDifference) {
    const auto fixed = makeView<View>(), wide = makeView<View>(), grandchild = makeView<View>();
    parent->setFrame({{5, 5}, {100, 200}});
    child->setFrame({{10, 10}, {80, 180}});
    child->setResizing(View::kFlexibleWidth | View::kFlexibleHeight);
    wide->setFrame({{0, 0}, {50, 20}});
    wide->setResizing(View::kFlexibleWidth);
    fixed->setFrame({{1, 2}, {3, 4}});
    grandchild->setResizing(View::kFlexibleHeight);
    for (const auto& view : {child, wide, fixed})
        parent->addSubview(view);
    child->addSubview(grandchild);

    parent->setFrame({{0, 0}, {150, 190}});
    EXPECT_EQ(recorded(*child).frame, (Rect{{10, 10}, {130, 170}}));
    EXPECT_EQ(recorded(*wide).frame, (Rect{{0, 0}, {100, 20}}));
    EXPECT_EQ(fixed->frame(), (Rect{{1, 2}, {3, 4}}));
    EXPECT_EQ(grandchild->frame(), (Rect{{0, 0}, {0, -10}}));

    parent->toolkitResized({100, 200});
    EXPECT_EQ(child->frame(), (Rect{{10, 10}, {80, 180}}));
}

TEST_F(ViewTest, OpacityStaysWithinItsRange) {
    for (const auto& [given, kept] : {std::pair(-1.0, 0.0), {2.0, 1.0}, {0.5, 0.5}, {std::nan(""), 0.0}}) {
        child->setOpacity(given);
        EXPECT_EQ(child->opacity(), kept);
        EXPECT_EQ(recorded(*child).opacity, kept);
    }
}

TEST_F(ViewTest, AFadeRunsFromThePresentOpacityByTheClock) {
    child->setOpacity(0.8);
    child->animateOpacity(0, 0.4, noteEnd);
    EXPECT_EQ(child->opacity(), 0.8);
    advance(0.2);
    EXPECT_THAT(recorded(*child).opacity, DoubleNear(0.4, 0.04));
    EXPECT_TRUE(ends.empty());
    advance(0.25);
    EXPECT_EQ(child->opacity(), 0);
    EXPECT_THAT(ends, ElementsAre(true));
    child->setOpacity(1);
    advance(1);
    EXPECT_EQ(child->opacity(), 1);
}

TEST_F(ViewTest, OnlyANewerFadeInterrupts) {
    child->animateOpacity(0, 0.3, noteEnd);
    advance(0.1);
    child->setOpacity(1);
    child->setHidden(false);
    parent->addSubview(child);
    child->removeFromSuperview();
    EXPECT_TRUE(ends.empty());
    child->animateOpacity(1, 0.3, noteEnd);
    EXPECT_THAT(ends, ElementsAre(false));
    advance(0.4);
    EXPECT_THAT(ends, ElementsAre(false, true));
    EXPECT_EQ(child->opacity(), 1);
}

TEST_F(ViewTest, AFadeMayStartAnotherFromItsEnd) {
    child->animateOpacity(0, 0.1, [this](bool) { child->animateOpacity(1, 0.1, noteEnd); });
    advance(0.3);
    EXPECT_THAT(ends, ElementsAre(true));
    EXPECT_EQ(child->opacity(), 1);
}

TEST_F(ViewTest, AFadeDiesWithItsView) {
    child->animateOpacity(0, 0.3, noteEnd);
    child.reset();
    advance(1);
    EXPECT_TRUE(ends.empty());
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

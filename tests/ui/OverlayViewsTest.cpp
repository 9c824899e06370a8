#include "support/FakePlatform.h"
#include "ui/ErrorPreviewView.h"
#include "ui/MarkerLoadingView.h"
#include "ui/SdkLoadingView.h"

#include <gmock/gmock.h>

using namespace kestrin;
using platform::makeView;
using platform::Rect;
using platform::View;
using test::offMain;
using testing::ElementsAre;

namespace {

struct OverlayViewsTest : test::PlatformTest {
    std::shared_ptr<KestrinCustomView> view = makeView<KestrinCustomView>();
    std::shared_ptr<View> parent = makeView<View>();

    /// A part of a loaded overlay: its place is that in the alphabet of the resource's part names.
    template <class Part>
    static std::shared_ptr<Part> part(const View& overlay) {
        for (const auto& each : overlay.subviews().at(0)->subviews())
            if (const auto found = std::dynamic_pointer_cast<Part>(each))
                return found;
        return nullptr;
    }
};

} // namespace

TEST_F(OverlayViewsTest, HideIsDeferredThenFades) {
    view->hide();
    advance(0.49);
    EXPECT_EQ(view->opacity(), 1);
    advance(0.15);
    EXPECT_LT(view->opacity(), 1);
    EXPECT_FALSE(view->isHidden());
    advance(0.2);
    EXPECT_EQ(view->opacity(), 0);
    EXPECT_TRUE(view->isHidden());

    view->show();
    view->hide();
    advance(0.6);
    view->animateOpacity(0.5, 0.1, {});
    advance(1);
    EXPECT_FALSE(view->isHidden()) << "an interrupted fade hid the view";
}

TEST_F(OverlayViewsTest, AShowMeanwhileIsOvertakenByTheFade) {
    for (const double moment : {0.0, 0.3, 0.6}) {
        view->show();
        view->hide();
        advance(moment);
        view->show();
        EXPECT_EQ(view->opacity(), 1);
        advance(0.85 - moment);
        EXPECT_TRUE(view->isHidden()) << "shown after " << moment;
    }
}

TEST_F(OverlayViewsTest, FillsItsParentAlsoLater) {
    parent->setFrame({{7, 8}, {100, 200}});
    view->addToParentView(parent);
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {100, 200}}));
    parent->setFrame({{7, 8}, {300, 150}});
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {300, 150}}));
    view->setFrame({{1, 1}, {2, 2}});
    view->clipToParent();
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {300, 150}}));
    EXPECT_TRUE(takeLog().empty());
    view->addToParentView(nullptr);
    EXPECT_THAT(takeLog(), ElementsAre("Kestrin - KestrinCustomView - addToSubview - Cannot add since view "
                                       "argument is NULL."));
}

TEST_F(OverlayViewsTest, OffMainEverythingComesLaterInOrder) {
    offMain([&] {
        view->hideInstant();
        view->addToParentView(parent);
    });
    EXPECT_FALSE(view->isHidden());
    EXPECT_EQ(view->superview(), nullptr);
    runMain();
    EXPECT_TRUE(view->isHidden());
    EXPECT_EQ(view->superview(), parent);
}

TEST_F(OverlayViewsTest, APictureShowsTheBackgroundAndWhitensTheSpinner) {
    const auto loading = SdkLoadingView::initWithFrame({});
    const auto picture = part<platform::ImageView>(*loading);
    loading->setBGImage({});
    EXPECT_TRUE(picture->isHidden());
    EXPECT_NE(part<platform::Spinner>(*loading)->color(), platform::kWhite);
    loading->setBGImage(test::makeImage(2, 3));
    EXPECT_FALSE(picture->isHidden());
    EXPECT_EQ(picture->image().pixelHeight(), 3);
    EXPECT_EQ(part<platform::Spinner>(*loading)->color(), platform::kWhite);
}

TEST_F(OverlayViewsTest, MissingResourcesLeaveEmptyViews) {
    system->viewToolkit.interfaces.clear();
    SdkLoadingView::initWithFrame({})->setBGImage(test::makeImage(1, 1));
    MarkerLoadingView::initWithFrame({})->setBGImage(test::makeImage(1, 1));
    const auto error = ErrorPreviewView::initWithFrame({});
    error->setTitle("a", "b");
    EXPECT_TRUE(error->subviews().empty());
}

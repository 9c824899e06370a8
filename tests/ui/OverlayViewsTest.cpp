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
using test::recorded;
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

TEST_F(OverlayViewsTest, AnInterruptedFadeLeavesTheViewUnhidden) {
    view->hide();
    advance(0.6);
    view->animateOpacity(0.5, 0.1, {});
    advance(1);
    EXPECT_FALSE(view->isHidden());
    EXPECT_EQ(view->opacity(), 0.5);
}

TEST_F(OverlayViewsTest, HideInstantHidesAtOnce) {
    view->hideInstant();
    EXPECT_TRUE(recorded(*view).hidden);
    EXPECT_EQ(recorded(*view).opacity, 0);
    view->show();
    EXPECT_FALSE(recorded(*view).hidden);
    EXPECT_EQ(recorded(*view).opacity, 1);
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
    view->removeFromParentView();
    view->setFrame({{1, 1}, {2, 2}});
    view->clipToParent();
    EXPECT_EQ(view->frame(), (Rect{{1, 1}, {2, 2}}));
    EXPECT_TRUE(takeLog().empty());
}

TEST_F(OverlayViewsTest, WithoutAParentIsLoggedAndNotAdded) {
    view->addToParentView(nullptr);
    EXPECT_THAT(takeLog(), ElementsAre("Kestrin - KestrinCustomView - addToSubview - Cannot add since view "
                                       "argument is NULL."));
}

TEST_F(OverlayViewsTest, OffMainEverythingComesLaterInOrder) {
    const auto error = ErrorPreviewView::initWithFrame({});
    offMain([&] {
        view->hideInstant();
        view->addToParentView(parent);
        error->setTitle("Uh Oh!", "Body");
    });
    EXPECT_FALSE(view->isHidden());
    EXPECT_EQ(view->superview(), nullptr);
    runMain();
    EXPECT_TRUE(view->isHidden());
    EXPECT_EQ(view->superview(), parent);

    offMain([&] {
        view->show();
        view->removeFromParentView();
        view->clipToParent();
    });
    EXPECT_TRUE(view->isHidden());
    runMain();
    EXPECT_FALSE(view->isHidden());
    EXPECT_EQ(view->superview(), nullptr);
}

TEST_F(OverlayViewsTest, ContentFillsTheOverlay) {
    const auto loading = SdkLoadingView::initWithFrame({{0, 0}, {10, 20}});
    loading->setBackground(platform::kWhite);
    parent->setFrame({{0, 0}, {375, 667}});
    loading->addToParentView(parent);
    EXPECT_EQ(loading->subviews().at(0)->frame(), (Rect{{0, 0}, {375, 667}}));
    EXPECT_EQ(MarkerLoadingView::initWithFrame({{0, 0}, {9, 9}})->background(), platform::kClear);
}

TEST_F(OverlayViewsTest, APictureShowsTheBackgroundAndWhitensTheSpinner) {
    const auto loading = SdkLoadingView::initWithFrame({});
    const auto marker = MarkerLoadingView::initWithFrame({});
    const auto picture = part<platform::ImageView>(*loading), second = part<platform::ImageView>(*marker);
    const auto spinner = part<platform::Spinner>(*loading);

    loading->setBGImage({});
    marker->setBGImage({});
    EXPECT_TRUE(picture->isHidden());
    EXPECT_TRUE(second->isHidden());
    EXPECT_NE(spinner->color(), platform::kWhite);

    offMain([&] { loading->setBGImage(test::makeImage(2, 3)); });
    EXPECT_TRUE(picture->isHidden());
    runMain();
    marker->setBGImage(test::makeImage(4, 5));
    EXPECT_FALSE(picture->isHidden());
    EXPECT_EQ(picture->image().pixelHeight(), 3);
    EXPECT_EQ(spinner->color(), platform::kWhite);
    EXPECT_FALSE(second->isHidden());
    EXPECT_EQ(second->image().pixelWidth(), 4);
}

TEST_F(OverlayViewsTest, TheErrorPanelIsRoundedAndShowsBothTexts) {
    const auto error = ErrorPreviewView::initWithFrame({});
    error->setTitle("Oops!", "We don\u2019t have access");
    std::vector<std::string> texts;
    platform::Border border;
    for (const auto& each : error->subviews().at(0)->subviews()) {
        if (const auto label = std::dynamic_pointer_cast<platform::Label>(each))
            texts.push_back(label->text());
        else
            border = each->border();
    }
    EXPECT_THAT(texts, ElementsAre("We don\u2019t have access", "Oops!"));
    EXPECT_EQ(border, (platform::Border{8.0, 0.3, platform::kDarkGray}));
}

TEST_F(OverlayViewsTest, MissingResourcesLeaveEmptyViews) {
    system->viewToolkit.interfaces.clear();
    const auto loading = SdkLoadingView::initWithFrame({});
    const auto error = ErrorPreviewView::initWithFrame({});
    const auto marker = MarkerLoadingView::initWithFrame({});
    loading->setBGImage(test::makeImage(1, 1));
    marker->setBGImage(test::makeImage(1, 1));
    error->setTitle("a", "b");
    error->show();
    EXPECT_TRUE(loading->subviews().empty());
    EXPECT_FALSE(error->isHidden());
}

#include "support/FakePlatform.h"
#include "ui/ErrorPreviewView.h"
#include "ui/MarkerLoadingView.h"
#include "ui/SdkLoadingView.h"

using namespace kestrin;
using platform::makeView;
using platform::Rect;
using platform::View;
using test::offMain;

namespace {

struct OverlayViewsTest : test::PlatformTest {
    std::shared_ptr<KestrinCustomView> view = makeView<KestrinCustomView>();
    std::shared_ptr<View> parent = makeView<View>();
};

} // namespace

TEST_F(OverlayViewsTest, HideIsDeferredThenFades) {
    view->hide();
    advance(0.49);
    EXPECT_EQ(view->opacity(), 1);
    advance(0.15);
    EXPECT_LT(view->opacity(), 1);
    EXPECT_FALSE(view->isHidden());
    for (const double moment : {0.0, 0.3, 0.6}) {
        advance(0.2);
        EXPECT_TRUE(view->isHidden() && view->opacity() == 0) << "before " << moment;
        view->show();
        view->hide();
        advance(moment);
        view->show(); // is overtaken by the fade
        EXPECT_EQ(view->opacity(), 1);
        advance(0.65 - moment);
    }
}

TEST_F(OverlayViewsTest, FillsItsParentAlsoLater) {
    parent->setFrame({{7, 8}, {100, 200}});
    view->addToParentView(parent);
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {100, 200}}));
    parent->setFrame({{7, 8}, {300, 150}});
    EXPECT_EQ(view->frame(), (Rect{{0, 0}, {300, 150}}));
    offMain([&] { view->removeFromParentView(); });
    EXPECT_EQ(view->superview(), parent);
    runMain();
    EXPECT_EQ(view->superview(), nullptr);
    view->addToParentView(nullptr);
    EXPECT_EQ(takeLog(),
              std::vector<std::string>{
                  "Kestrin - KestrinCustomView - addToSubview - Cannot add since view argument is NULL."});
}

TEST_F(OverlayViewsTest, APictureShowsTheBackgroundAndWhitensTheSpinner) {
    const auto loading = SdkLoadingView::initWithFrame({});
    const auto& content = system->viewToolkit.loaded["SdkLoading"];
    for (const bool isThere : {false, true}) {
        loading->setBGImage(isThere ? test::makeImage(2, 3) : platform::Image());
        EXPECT_EQ(content.part<View>("backgroundImage")->isHidden(), !isThere);
        EXPECT_EQ(content.part<platform::Spinner>("loadingSpinner")->color() == platform::kWhite, isThere);
    }
}

TEST_F(OverlayViewsTest, MissingResourcesLeaveEmptyViews) {
    system->viewToolkit.interfaces.clear();
    SdkLoadingView::initWithFrame({})->setBGImage(test::makeImage(1, 1));
    MarkerLoadingView::initWithFrame({})->setBGImage(test::makeImage(1, 1));
    const auto error = ErrorPreviewView::initWithFrame({});
    error->setTitle("a", "b");
    EXPECT_TRUE(error->subviews().empty());
}

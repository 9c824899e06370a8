#include "WebViewTest.h"
#include "services/util/CertificatePolicy.h"

#include <gmock/gmock.h>

using namespace kestrin;
using platform::NavigationPolicy;
using test::offMain;
using test::recorded;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kLoading = "Kestrin - AR View loading URL";

struct KestrinWebViewTest : test::WebViewTest {
    ~KestrinWebViewTest() override { certificatePolicy = CertificatePolicy::acceptAll; }
    platform::View& view() { return *webView->getView(); }
    void hideWholly() {
        webView->hide();
        advance(0.35);
        ASSERT_TRUE(view().isHidden());
    }
};

} // namespace

TEST_F(KestrinWebViewTest, PrepareConfiguresOnce) {
    webView->eval("dropped");
    EXPECT_EQ(webView->getView(), nullptr);
    EXPECT_EQ(webView->getSize(), platform::Size());
    prepare();
    prepare();
    EXPECT_EQ(system->webToolkit.made, 1);

    const auto& set = page().configuration;
    EXPECT_TRUE(set.allowsInlineMediaPlayback && set.suppressesIncrementalRendering &&
                set.allowsPictureInPicture && set.accessibilityModal);
    EXPECT_FALSE(set.mediaRequiresUserAction);
    EXPECT_EQ(set.preferences.at("allowFileAccessFromFileURLs"), 1);
    EXPECT_EQ(set.scriptMessageHandlers.at("kestrin").lock(), webView);
    EXPECT_EQ(set.scriptMessageHandlers.at("kestrinjs").lock(), webView);
    EXPECT_FALSE(page().opaque || page().scroll.opaque || page().scroll.bounces);
    EXPECT_EQ(page().background, platform::kClear);
    EXPECT_EQ(page().scroll.background, platform::kClear);
    EXPECT_TRUE(page().scroll.adjustsContentInset);
    EXPECT_FALSE(page().scroll.insetsLayoutMarginsFromSafeArea);
    EXPECT_EQ(page().navigation.lock(), webView);
    EXPECT_EQ(page().ui.lock(), webView);
    EXPECT_THAT(page().loads, IsEmpty());
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(KestrinWebViewTest, OldSystemsKeepTheirInsets) {
    system->level = 10.3;
    prepare();
    EXPECT_FALSE(page().scroll.adjustsContentInset);
    EXPECT_TRUE(page().scroll.insetsLayoutMarginsFromSafeArea);
}

TEST_F(KestrinWebViewTest, ThePageIsNeverPushedAside) {
    system->webToolkit.insets = {44, 0, 34, 0};
    prepare();
    EXPECT_EQ(dynamic_cast<platform::WebView&>(view()).safeAreaInsets(), platform::Insets());
}

TEST_F(KestrinWebViewTest, AnAddressAskedForEarlyIsLoadedByPrepare) {
    webView->loadUrl("https://a", true);
    EXPECT_THAT(takeLog(),
                ElementsAre(kLoading, "WebView - Request to launch URL - https://a",
                            "WebView - Unable to launch URL https://a due to context not prepared"));
    prepare();
    EXPECT_THAT(takeLog(), ElementsAre(kLoading, "WebView - Request to launch URL - https://a",
                                       "WebView - Launching URL - https://a"));
    EXPECT_EQ(system->webToolkit.cacheClears, 0);
    ASSERT_EQ(page().loads.size(), 1U);
    EXPECT_EQ(page().loads[0].timeout, 10.0);
    EXPECT_TRUE(page().loads[0].ignoresLocalCache);

    webView->loadUrl(std::nullopt, true);
    EXPECT_THAT(takeLog(), ElementsAre(kLoading, "WebView - Request to launch URL - (null)"));
    webView->loadUrl("https://b", true);
    EXPECT_EQ(system->webToolkit.cacheClears, 1);
    webView->clear();
    EXPECT_EQ(page().loads.back().url, "about:blank");
    EXPECT_EQ(system->webToolkit.cacheClears, 1);
    webView->goBack();
    webView->goForward();
    EXPECT_EQ(page().loads.size(), 3U);
}

TEST_F(KestrinWebViewTest, OffMainEachOperationRepostsItself) {
    const auto parent = platform::makeView<platform::View>();
    parent->setFrame({{3, 4}, {100, 200}});
    offMain([&] {
        webView->prepare(frames);
        webView->loadUrl("https://a", false);
        webView->addToParentView(parent);
        webView->setBackgroundColor(platform::kWhite);
        webView->eval("one");
        webView->eval("two");
    });
    EXPECT_EQ(system->webToolkit.made, 0);
    runMain();
    EXPECT_THAT(takeLog(), ElementsAre(kLoading, "Kestrin - Adding AR WebView to View Hierarchy", kLoading,
                                       "WebView - Request to launch URL - https://a",
                                       "WebView - Launching URL - https://a",
                                       "Kestrin - Adding AR WebView to View Hierarchy"));
    EXPECT_THAT(page().scripts, ElementsAre("one", "two"));
    EXPECT_EQ(page().background, platform::kWhite);
    EXPECT_EQ(page().scroll.background, platform::kWhite);
    EXPECT_EQ(view().superview(), parent);
    EXPECT_EQ(webView->getSize(), (platform::Size{100, 200}));

    parent->setFrame({{0, 0}, {50, 60}});
    EXPECT_EQ(webView->getSize(), (platform::Size{50, 60}));
    view().setFrame({});
    offMain([&] { webView->clipToParent(); });
    EXPECT_EQ(webView->getSize(), platform::Size());
    runMain();
    EXPECT_EQ(webView->getSize(), (platform::Size{50, 60}));
    offMain([&] { webView->removeFromParentView(); });
    EXPECT_EQ(view().superview(), parent);
    runMain();
    EXPECT_EQ(view().superview(), nullptr);
    EXPECT_THAT(takeLog(), ElementsAre("Kestrin - Removing AR WebView to View Hierarchy",
                                       "Kestrin - Removing AR WebView to View Hierarchy"));
}

TEST_F(KestrinWebViewTest, WithoutAParentIsLoggedAndNotAdded) {
    webView->addToParentView(platform::makeView<platform::View>());
    webView->clipToParent();
    prepare();
    takeLog();
    webView->addToParentView(nullptr);
    EXPECT_THAT(takeLog(), ElementsAre("Kestrin - Adding AR WebView to View Hierarchy",
                                       "Kestrin - KestrinWebView - addToSubview - Cannot add since view "
                                       "argument is NULL."));
}

TEST_F(KestrinWebViewTest, ScriptsKeepTheOrderOfTheirThread) {
    prepare();
    std::thread session([&] {
        for (int i = 0; i < 300; ++i)
            webView->eval(std::to_string(i));
    });
    while (page().scripts.size() < 300)
        runMain();
    session.join();
    for (int i = 0; i < 300; ++i)
        ASSERT_EQ(page().scripts[std::size_t(i)], std::to_string(i));
    webView->eval("");
    EXPECT_EQ(page().scripts.size(), 300U);
}

TEST_F(KestrinWebViewTest, ShowsAHiddenViewAfterHalfASecond) {
    webView->show();
    webView->hide();
    prepare();
    hideWholly();
    webView->show();
    advance(0.49);
    EXPECT_TRUE(view().isHidden());
    advance(0.02);
    EXPECT_FALSE(view().isHidden());
    EXPECT_EQ(view().opacity(), 1);
    hideWholly();
    EXPECT_TRUE(recorded(view()).hidden);
}

TEST_F(KestrinWebViewTest, AShowDuringTheFadeIsLost) {
    prepare();
    webView->hide();
    advance(0.1);
    webView->show();
    advance(2);
    EXPECT_TRUE(view().isHidden());
    EXPECT_EQ(view().opacity(), 0);
}

TEST_F(KestrinWebViewTest, AnInterruptedHideLeavesTheViewUnhidden) {
    prepare();
    webView->hide();
    advance(0.1);
    const double reached = view().opacity();
    view().animateOpacity(reached, 0.1, {});
    advance(1);
    EXPECT_FALSE(view().isHidden());
    EXPECT_EQ(view().opacity(), reached);
    hideWholly();
}

TEST_F(KestrinWebViewTest, ShowsAndHidesFromTheSessionThread) {
    prepare();
    std::thread session([&] {
        for (int i = 0; i < 100; ++i) {
            webView->hide();
            webView->show();
        }
    });
    for (int i = 0; i < 100; ++i)
        advance(0.05);
    session.join();
    offMain([&] { webView->hide(); });
    advance(2);
    hideWholly();
    offMain([&] { webView->show(); });
    advance(0.6);
    EXPECT_FALSE(view().isHidden());
}

TEST_F(KestrinWebViewTest, MailAndTelephoneLinksGoToTheSystem) {
    prepare();
    system->app.opens = [](const std::string& url) { return !url.starts_with("sms"); };
    for (const char* url : {"tel:1", "mms:1", "mmsto:1", "mailto:a@b"})
        EXPECT_EQ(page().navigate(url), NavigationPolicy::cancel) << url;
    EXPECT_THAT(system->app.openedUrls, ElementsAre("tel:1", "mms:1", "mmsto:1", "mailto:a@b"));
    for (const char* url :
         {"sms:1", "smsto:1", "https://a", "MAILTO:x", "mailtox:y", "file:///a", "", "mailto"})
        EXPECT_EQ(page().navigate(url), NavigationPolicy::allow) << url;
    EXPECT_EQ(page().navigate("mailto:other-window", false), NavigationPolicy::allow);
    EXPECT_EQ(system->app.openedUrls.size(), 4U);
    EXPECT_EQ(system->logSink.count("Navigation Policy - WKNavigationActionPolicyAllow"), 13);

    takeLog();
    system->level = 13.0;
    EXPECT_EQ(page().navigate("mailto:a@b"), NavigationPolicy::allow);
    EXPECT_EQ(page().contentMode, platform::ContentMode::mobile);
    EXPECT_EQ(system->app.openedUrls.size(), 4U);
    EXPECT_THAT(takeLog(), ElementsAre("Navigation Policy - IOS 13.0"));
}

TEST_F(KestrinWebViewTest, AnswersTheOtherQuestionsOfTheWebView) {
    EXPECT_EQ(webView->decideNavigationResponse("https://a"), NavigationPolicy::allow);
    webView->didRequestFile();
    EXPECT_TRUE(webView->acceptServerTrust("a"));
    EXPECT_THAT(takeLog(), ElementsAre("Navigation Policy - WKNavigationResponsePolicyAllow", "FILE UPLOAD!",
                                       "KestrinARView::Resolving HTTPS Authentication",
                                       "KestrinARView::Resolved HTTPS Authentication"));
    certificatePolicy = CertificatePolicy::strict;
    EXPECT_FALSE(webView->acceptServerTrust("a"));
}

#include "WebViewTest.h"

#include "platform/CertificatePolicy.h"

#include <gmock/gmock.h>

using namespace kestrin;
using platform::NavigationPolicy;
using test::offMain;
using testing::ElementsAre;

namespace {

constexpr const char* kLoading = "Kestrin - AR View loading URL";
constexpr const char* kAdding = "Kestrin - Adding AR WebView to View Hierarchy";

struct KestrinWebViewTest : test::WebViewTest {
    platform::View& view() { return *webView->getView(); }
};

} // namespace

TEST_F(KestrinWebViewTest, AnAddressAskedForEarlyIsLoadedByTheFirstPrepare) {
    webView->loadUrl("https://a", true);
    EXPECT_THAT(takeLog(),
                ElementsAre(kLoading, "WebView - Request to launch URL - https://a",
                            "WebView - Unable to launch URL https://a due to context not prepared"));
    prepare();
    prepare();
    EXPECT_EQ(system->webToolkit.made, 1);
    EXPECT_EQ(view().background(), platform::kClear);
    ASSERT_EQ(page().loads.size(), 1U);
    EXPECT_EQ(system->webToolkit.cacheClears, 0);

    takeLog();
    webView->loadUrl(std::nullopt, true);
    EXPECT_THAT(takeLog(), ElementsAre(kLoading, "WebView - Request to launch URL - (null)"));
    webView->loadUrl("https://b", true);
    EXPECT_EQ(system->webToolkit.cacheClears, 1);
}

TEST_F(KestrinWebViewTest, OffMainEachOperationRepostsItself) {
    const auto parent = platform::makeView<platform::View>();
    parent->setFrame({{3, 4}, {100, 200}});
    offMain([&] {
        webView->prepare(frames);
        webView->loadUrl("https://a", false);
        webView->addToParentView(parent);
        webView->eval("one");
        webView->eval("two");
    });
    runMain();
    EXPECT_THAT(takeLog(),
                ElementsAre(kLoading, kAdding, kLoading, "WebView - Request to launch URL - https://a",
                            "WebView - Launching URL - https://a", kAdding));
    EXPECT_THAT(page().scripts, ElementsAre("one", "two"));
    EXPECT_EQ(webView->getSize(), (platform::Size{100, 200}));
}

TEST_F(KestrinWebViewTest, ShowsAHiddenViewAfterHalfASecondUnlessItFades) {
    prepare();
    webView->hide();
    advance(0.1);
    webView->show();
    advance(2);
    EXPECT_TRUE(view().isHidden());
    webView->show();
    advance(0.51);
    EXPECT_FALSE(view().isHidden());
    webView->hide();
    advance(0.1);
    view().animateOpacity(0.5, 0.1, {});
    advance(1);
    EXPECT_FALSE(view().isHidden()) << "an interrupted fade hid the view";
}

TEST_F(KestrinWebViewTest, TheSystemGetsItsLinksAndEveryServerIsTrusted) {
    prepare();
    system->app.opens = [](const std::string& url) { return !url.starts_with("sms"); };
    for (const char* url : {"tel:1", "mms:1", "mmsto:1", "mailto:a@b"}) {
        EXPECT_EQ(page().navigate(url), NavigationPolicy::cancel) << url;
        EXPECT_EQ(system->app.openedUrls.back(), url);
    }
    for (const char* url : {"sms:1", "https://a", "MAILTO:x", "mailtox:y", "mailto", ""})
        EXPECT_EQ(page().navigate(url), NavigationPolicy::allow) << url;
    EXPECT_EQ(system->logSink.count("Navigation Policy - WKNavigationActionPolicyAllow"), 10);
    takeLog();
    system->level = 13.0;
    EXPECT_EQ(page().navigate("mailto:a@b"), NavigationPolicy::allow);
    EXPECT_EQ(page().contentMode, platform::ContentMode::mobile);
    EXPECT_TRUE(webView->acceptServerTrust("a"));
    EXPECT_THAT(takeLog(),
                ElementsAre("Navigation Policy - IOS 13.0", "KestrinARView::Resolving HTTPS Authentication",
                            "KestrinARView::Resolved HTTPS Authentication"));
    platform::certificatePolicy = platform::CertificatePolicy::strict;
    EXPECT_FALSE(webView->acceptServerTrust("a")) << "the deployment is strict";
    platform::certificatePolicy = platform::CertificatePolicy::acceptAll;
}

#include "bridge/KestrinWebView.h"

#include "bridge/FullScreenWKWebView.h"
#include "bridge/KestrinWebEvent.h"
#include "bridge/PageFrameListener.h"
#include "platform/CertificatePolicy.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"
#include "services/util/SystemLevel.h"
#include "services/util/Url.h"
#include "ui/KestrinCustomView.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <array>
#include <utility>

namespace kestrin {

using platform::NavigationPolicy;
using platform::View;

namespace {

constexpr double kShowDelay = 0.5; // seconds, as the next two
constexpr double kFade = 0.3;
constexpr double kLoadTimeout = 10.0;
// What a waiting message takes beside its text, so that a flood of short ones is bounded too.
constexpr std::size_t kMessageOverhead = 1024;

constexpr std::array<std::string_view, 6> kSystemSchemes{"tel", "sms", "smsto", "mms", "mmsto", "mailto"};

char lowered(char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; }

bool isSubmit(std::string_view body) {
    return std::ranges::equal(body, std::string_view("onsubmit"), {}, lowered);
}

EventData decode(std::string_view body) {
    auto decoded = KestrinUtil::json64ToDict(body);
    auto* const map = decoded ? decoded->if_object() : nullptr;
    return map ? std::make_shared<const boost::json::object>(std::move(*map)) : nullptr;
}

} // namespace

KestrinWebView::KestrinWebView() = default;

KestrinWebView::~KestrinWebView() = default;

std::shared_ptr<PageFrameListener> KestrinWebView::frameListener() const {
    const std::lock_guard lock(m_mutex);
    return manager;
}

void KestrinWebView::prepare(std::shared_ptr<PageFrameListener> listener) {
    {
        const std::lock_guard lock(m_mutex);
        manager = listener;
    }
    if (_isPrepared || divertToMain([self = shared_from_this(), listener] { self->prepare(listener); }))
        return;
    _isPrepared = true;
    makeWebView();
    if (_url)
        loadUrl(_url, false);
}

void KestrinWebView::makeWebView() {
    _theConfiguration.scriptMessageHandlers = {{"kestrin", weak_from_this()},
                                               {"kestrinjs", weak_from_this()}};
    _theConfiguration.allowsInlineMediaPlayback = true;
    _theConfiguration.mediaRequiresUserAction = false;
    _theConfiguration.suppressesIncrementalRendering = true;
    _theConfiguration.allowsPictureInPicture = true;
    _theConfiguration.preferences["allowFileAccessFromFileURLs"] = 1;
    _theConfiguration.accessibilityModal = true;
    _webView = platform::makeView<FullScreenWKWebView>(_theConfiguration);

    platform::ScrollSettings scroll;
    if (systemIsAtLeast(11.0)) {
        scroll.adjustsContentInset = true;
        scroll.insetsLayoutMarginsFromSafeArea = false;
    }
    scroll.opaque = false;
    scroll.background = platform::kClear;
    scroll.bounces = false;
    _webView->setOpaque(false);
    _webView->setBackground(platform::kClear);
    _webView->setScroll(scroll);
    _webView->setNavigationDelegate(weak_from_this());
    _webView->setUiDelegate(weak_from_this());
}

void KestrinWebView::loadUrl(const std::optional<std::string>& url, bool clearCacheFirst) {
    log("Kestrin - AR View loading URL");
    if (divertToMain(
            [self = shared_from_this(), url, clearCacheFirst] { self->loadUrl(url, clearCacheFirst); }))
        return;
    log("WebView - Request to launch URL - %@", url);
    _url = url;
    if (!_isPrepared) {
        log("WebView - Unable to launch URL %@ due to context not prepared", url);
        return;
    }
    if (!url)
        return;
    if (clearCacheFirst)
        clearCache();
    log("WebView - Launching URL - %@", url);
    _webView->load({*url, true, kLoadTimeout});
    show();
}

void KestrinWebView::clear() { loadUrl("about:blank", false); }

void KestrinWebView::clearCache() { platform::platform().web().clearCache(); }

void KestrinWebView::setInspectable(bool inspectable) {
    if (!divertToMain([self = shared_from_this(), inspectable] { self->setInspectable(inspectable); }) &&
        _webView)
        _webView->setInspectable(inspectable);
}

void KestrinWebView::eval(std::string script) {
    platform::Dispatch& dispatch = platform::platform().dispatch();
    if (!dispatch.isMain())
        dispatch.mainAsync([self = shared_from_this(), moved = std::move(script)] {
            if (self->_webView)
                self->_webView->evaluate(moved);
        });
    else if (_webView && !script.empty())
        _webView->evaluate(script);
}

void KestrinWebView::show() {
    if (!m_isHidden)
        return;
    platform::platform().dispatch().mainAfter(kShowDelay, [self = shared_from_this()] {
        self->m_isHidden = false;
        self->_webView->setHidden(false);
        self->_webView->setOpacity(1.0);
    });
}

void KestrinWebView::hide() {
    if (!_isPrepared || m_isHidden || divertToMain([self = shared_from_this()] { self->hide(); }))
        return;
    _webView->animateOpacity(0.0, kFade, [weak = weak_from_this()](bool finished) {
        const auto self = weak.lock();
        if (!self)
            return;
        self->m_isHidden = finished;
        self->_webView->setHidden(finished);
    });
}

void KestrinWebView::setBackgroundColor(const platform::Color& color) {
    if (divertToMain([self = shared_from_this(), color] { self->setBackgroundColor(color); }) || !_webView)
        return;
    _webView->setBackground(color);
    platform::ScrollSettings scroll = _webView->scroll();
    scroll.background = color;
    _webView->setScroll(scroll);
}

void KestrinWebView::addToParentView(const std::shared_ptr<View>& parent) {
    log("Kestrin - Adding AR WebView to View Hierarchy");
    if (!parent) {
        log("Kestrin - KestrinWebView - addToSubview - Cannot add since view argument is NULL.");
        return;
    }
    if (divertToMain([self = shared_from_this(), parent] { self->addToParentView(parent); }) || !_webView)
        return;
    KestrinCustomView::addClipConstraints(_webView, parent);
}

void KestrinWebView::removeFromParentView() {
    log("Kestrin - Removing AR WebView to View Hierarchy");
    if (!divertToMain([self = shared_from_this()] { self->removeFromParentView(); }) && _webView)
        KestrinCustomView::removeFromParent(_webView);
}

void KestrinWebView::clipToParent() {
    if (!divertToMain([self = shared_from_this()] { self->clipToParent(); }) && _webView)
        KestrinCustomView::clipToParent(_webView);
}

platform::Size KestrinWebView::getSize() const {
    assertMain();
    return _webView ? _webView->frame().size : platform::Size();
}

std::shared_ptr<View> KestrinWebView::getView() const {
    assertMain();
    return _webView;
}

void KestrinWebView::registerEventDelegate(std::weak_ptr<WebEventDelegate> delegate) {
    const std::lock_guard lock(m_mutex);
    _delegate = std::move(delegate);
}

std::shared_ptr<WebEventDelegate> KestrinWebView::delegate() const {
    const std::lock_guard lock(m_mutex);
    return _delegate.lock();
}

void KestrinWebView::didReceiveScriptMessage(const std::string&, std::string_view body) {
    if (isSubmit(body))
        if (const auto listener = frameListener()) {
            listener->signal();
            return;
        }
    if (!admit(body.size()))
        return;
    auto data = decode(body);
    if (!delegate())
        return;
    const std::size_t cost = body.size() + kMessageOverhead;
    m_waitingBytes += cost;
    platform::platform().dispatch().mainAsync([self = shared_from_this(), cost, data = std::move(data)] {
        self->m_waitingBytes -= cost;
        self->dispatchEvent(data);
    });
}

bool KestrinWebView::admit(std::size_t bytes) {
    const bool fits = m_waitingBytes + bytes <= kMaxWaitingBytes;
    if (!fits && !m_isDropping)
        log("KestrinWebView - Dropping page messages, those that wait would exceed %i bytes.",
            kMaxWaitingBytes);
    m_isDropping = !fits;
    return fits;
}

void KestrinWebView::dispatchEvent(const EventData& data) {
    const auto receiver = delegate();
    if (!receiver)
        return;
    const auto name = data ? textOf(findMember(*data, {"eventName"})) : std::nullopt;
    receiver->onWebEvent(KestrinWebEvent::stringToEvent(name), data);
}

NavigationPolicy KestrinWebView::decideNavigationAction(const platform::NavigationAction& action) {
    log("Navigation Policy - WKNavigationActionPolicyAllow");
    if (!action.inOwnWebView)
        return NavigationPolicy::allow;
    const auto scheme = urlScheme(action.url);
    const bool isForSystem = scheme && std::ranges::find(kSystemSchemes, *scheme) != kSystemSchemes.end();
    platform::Application& application = platform::platform().application();
    if (!isForSystem || !application.canOpenUrl(action.url))
        return NavigationPolicy::allow;
    application.openUrl(action.url);
    return NavigationPolicy::cancel;
}

NavigationPolicy KestrinWebView::decideNavigationAction(const platform::NavigationAction&,
                                                        platform::ContentMode& mode) {
    log("Navigation Policy - IOS 13.0");
    mode = platform::ContentMode::mobile;
    return NavigationPolicy::allow;
}

NavigationPolicy KestrinWebView::decideNavigationResponse(const std::string&) {
    log("Navigation Policy - WKNavigationResponsePolicyAllow");
    return NavigationPolicy::allow;
}

void KestrinWebView::webContentProcessDidTerminate() {
    if (m_pageLost)
        m_pageLost();
}

void KestrinWebView::didRequestFile() { log("FILE UPLOAD!"); }

bool KestrinWebView::acceptServerTrust(const std::string&) {
    log("KestrinARView::Resolving HTTPS Authentication");
    const bool accepts = platform::acceptsEveryServer();
    log("KestrinARView::Resolved HTTPS Authentication");
    return accepts;
}

} // namespace kestrin

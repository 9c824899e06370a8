#pragma once

#include "core/KestrinView.h"
#include "services/util/Base64.h"
#include "services/util/Format.h"
#include "support/FakePlatform.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrin::test {

using Lines = std::vector<std::string>;

/// A host view, its page and its session.
struct KestrinViewTest : PlatformTest {
    KestrinViewTest() {
        system->files.resources["KestrinCache/Features/feature_flags.json"] = "[]";
        answerFlags("shop.example", "A1", R"([\"one\"])");
        KestrinView::isPhotoAccessMinimize = false;
        view = KestrinView::init();
    }

    static KestrinSettings settingsFor(const std::string& host, const std::string& application) {
        KestrinSettings settings;
        settings.setTemplateUrl("https://" + host + "/template/index.html");
        settings.mCommand = base64Encode(
            format(R"([{"eventName":"sdkloadapplication","data":{"appID":"%@"}}])", application));
        return settings;
    }
    static std::string flagsAddress(const std::string& host, const std::string& application) {
        return format("https://%@/api/v2/application/%@"
                      "?prune[relationships]=file,scene,page,collection,applicationbuild",
                      host, application);
    }
    void answerFlags(const std::string& host, const std::string& application, const std::string& list) {
        system->server.answer(flagsAddress(host, application),
                              format(R"({"data":{"attributes":{"feature_flags":"%@"}}})", list));
    }

    void setup() { view->setup(settingsFor("shop.example", "A1")); }
    /// Set up, started and shown; nothing recorded.
    void startUp() {
        setup();
        view->start();
        runMain();
        takeScripts();
        takeLog();
    }

    /// What may be called from anywhere and is diverted to main, as the log then says.
    std::vector<std::pair<const char*, std::function<void()>>> divertedOperations() {
        return {{"setup", [this] { setup(); }},
                {"start", [this] { view->start(); }},
                {"hide", [this] { view->hide(); }},
                {"show", [this] { view->show(); }},
                {"resize", [this] { view->resize(10.5, 20); }},
                {"resizeToScreenSize", [this] { view->resizeToScreenSize(); }},
                {"resizeToScreenSize", [this] { view->resizeToScreenSizeUnscaled(); }},
                {"destroy", [this] { view->destroy(); }}};
    }

    FakeWebViewPeer& page() { return *system->webToolkit.newest; }
    FakeArSession& session() { return *system->worldTracking.newest(); }
    Lines takeScripts() { return std::exchange(page().scripts, {}); }
    /// The page posts an event, which is handled.
    void post(const std::string& event, const std::string& data = "{}") {
        page().post("kestrin", base64Encode(format(R"({"eventName":"%@","data":%@})", event, data)));
        runMain();
    }
    void notify(const char* name) { system->app.center.post(name); }
    std::ptrdiff_t logged(std::string_view line) { return system->logSink.count(line); }

    std::shared_ptr<KestrinView> view;
};

inline std::string call(std::string_view what) { return "window.__KRJ_Native_IN." + std::string(what); }

/// The script that sends one event.
inline std::string event(std::string_view name, std::string_view data) {
    return format("window.kestrinSDKEventHandler('%@');",
                  base64Encode(format(R"([{"eventName":"sdk%@","data":%@}])", name, data)));
}

} // namespace kestrin::test

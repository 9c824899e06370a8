#pragma once

#include "platform/View.h"
#include "services/util/QueryItem.h"
#include "services/util/Snapshot.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

class KestrinSettings;
class KestrinWebView;

/// Drives a view's page for the host application, and turns links into settings. Thread: any; what touches
/// the page re-posts itself to main.
class KestrinNavigator : public std::enable_shared_from_this<KestrinNavigator> {
  public:
    using SettingsCallback = std::function<void(const std::optional<KestrinSettings>& settings)>;

    /// A navigator of no page does nothing, and says so in the log when it is sent somewhere.
    static std::shared_ptr<KestrinNavigator> initWithContext(std::shared_ptr<KestrinWebView> webView);

    /// Whether there is a page to drive.
    bool isValid() const { return context != nullptr; }
    bool isARSupported() const { return true; }

    void addToParentView(const std::shared_ptr<platform::View>& parent);
    void removeFromParentView();
    void setBackgroundColor(const platform::Color& color);
    void setTransparent() { setBackgroundColor(platform::kClear); }
    void setOpaque() { setBackgroundColor(platform::kWhite); }

    void goBack();
    void goForward();
    /// Forgets every cached response.
    void clearCache();
    void goTo(const std::optional<std::string>& url);
    /// Goes where `goTo` went last.
    void reload();
    /// None before the first `goTo`.
    std::optional<std::string> getLastURL() const { return *lastURL.read(); }

    /// Whether the link is one of the maker's that names an application.
    static bool checkAppURL(std::string_view link);
    /// Asks the default server for the settings of the application that the link names, whatever the link's
    /// host. `callback` runs on main, with none when the server gave no key string; for one that names no
    /// template InvalidSettings is thrown there instead.
    static void getSettingsFrom(std::string_view link, SettingsCallback callback);
    /// The value of the first item of that name; none when that has none, or there is no such item.
    static std::optional<std::string> valueForKey(std::string_view key,
                                                  const std::optional<std::vector<QueryItem>>& items);

  private:
    explicit KestrinNavigator(std::shared_ptr<KestrinWebView> webView) : context(std::move(webView)) {}
    /// Takes a step on main, or says which operation has no page.
    void drive(const char* operation, void (KestrinWebView::*step)());

    const std::shared_ptr<KestrinWebView> context;
    Snapshot<std::optional<std::string>> lastURL;
};

} // namespace kestrin

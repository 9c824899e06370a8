#pragma once

#include "bridge/KestrinID.h"
#include "core/config/KestrinSettings.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrin {

class AppJSONStack;

/// Tells the running page to open an object of its application, by its identifier or found by its title on
/// the server. An absent identifier opens nothing. Thread: main, as for the callbacks.
class KestrinAppBridge : public std::enable_shared_from_this<KestrinAppBridge> {
  public:
    using Text = std::optional<std::string>;
    using FindCallback = std::function<void(const std::vector<KestrinID>& found)>;

    /// Null for `jsonStack` makes every opening do nothing.
    static std::shared_ptr<KestrinAppBridge> initWith(std::shared_ptr<AppJSONStack> jsonStack,
                                                      const KestrinSettings& settings);

    void open(const std::optional<KestrinID>& id) { openArbitrary(id); }
    void openScene(const Text& id);
    void openPage(const Text& id);
    void openApplication(const Text& id);
    void openArbitrary(const std::optional<KestrinID>& id);

    /// Opens the first that is found, in the server's order; nothing when none is.
    void openSceneByName(const Text& title);
    void openPageByName(const Text& title);

    /// The objects of that title, in the server's order; none when the look-up fails. The address of the
    /// look-up is escaped as a whole, slashes included.
    void findSceneByName(const Text& title, FindCallback callback);
    void findPageByName(const Text& title, FindCallback callback);
    void findArbiByName(const Text& title, const std::string& type, FindCallback callback);

  private:
    KestrinAppBridge(std::shared_ptr<AppJSONStack> jsonStack, const KestrinSettings& settings);
    FindCallback openFirst();

    const std::shared_ptr<AppJSONStack> _webview;
    const KestrinSettings _settings;
};

} // namespace kestrin

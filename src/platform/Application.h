#pragma once

#include "platform/Image.h"
#include "platform/Matrix.h"
#include "platform/NotificationCenter.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kestrin::platform {

class View;

struct Screen {
    Size size;                   ///< points
    double scale = 1;            ///< pixels a point that the toolkit draws with
    double nativeScale = 1;      ///< pixels a point of the display
    bool hasDisplayLink = false; ///< callbacks paced by the display can be had
};

/// Rules a view that is presented in front of the application's own. Thread: main.
class ViewController {
  public:
    virtual ~ViewController() = default;
    /// Loaded by the first call; null when it cannot be.
    virtual std::shared_ptr<View> view() = 0;
    virtual void viewDidAppear() = 0;
};

using ShareItem = std::variant<std::string, Image>;

/// The running application and the desktop around it. Thread: main, unless said otherwise.
class Application {
  public:
    virtual ~Application() = default;
    virtual Screen mainScreen() const = 0;
    /// The interface orientation, code 0..4. Thread: any.
    virtual int orientation() const = 0;
    virtual NotificationCenter& notifications() = 0;
    /// Whether the system has a handler for the address.
    virtual bool canOpenUrl(const std::string& url) const = 0;
    virtual void openUrl(const std::string& url) = 0;
    /// A modal message with one button that only dismisses it; returns at once.
    virtual void showAlert(const std::string& title, const std::string& message,
                           const std::string& button) = 0;
    /// Shows the view, modal, over all that is shown, and keeps the controller until it is dismissed, here or
    /// by the person. Nothing happens without a view. Returns at once.
    virtual void present(const std::shared_ptr<ViewController>& controller) = 0;
    virtual void dismiss(const ViewController& controller) = 0;
    /// Offers what the system can do with the items, modal; returns at once. Absent images do not count.
    virtual void presentShareSheet(const std::vector<ShareItem>& items) = 0;
};

} // namespace kestrin::platform

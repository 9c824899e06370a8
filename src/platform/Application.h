#pragma once

#include "platform/Matrix.h"
#include "platform/NotificationCenter.h"

#include <string>

namespace kestrin::platform {

struct Screen {
    Size size;                   ///< points
    double scale = 1;            ///< pixels a point that the toolkit draws with
    double nativeScale = 1;      ///< pixels a point of the display
    bool hasDisplayLink = false; ///< callbacks paced by the display can be had
};

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
};

} // namespace kestrin::platform

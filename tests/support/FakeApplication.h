#pragma once

#include "platform/Application.h"
#include "platform/Orientation.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::test {

class FakeApplication : public platform::Application {
  public:
    struct Alert {
        std::string title, message, button;
        bool operator==(const Alert&) const = default;
    };

    platform::Screen mainScreen() const override { return screen; }
    int orientation() const override { return interfaceOrientation.current(); }
    platform::NotificationCenter& notifications() override { return center; }
    bool canOpenUrl(const std::string& url) const override { return opens(url); }
    void openUrl(const std::string& url) override { openedUrls.push_back(url); }
    void showAlert(const std::string& title, const std::string& message, const std::string& button) override {
        alerts.push_back({title, message, button});
    }
    void present(const std::shared_ptr<platform::ViewController>& controller) override {
        if (controller->view())
            presented.push_back(controller);
    }
    void dismiss(const platform::ViewController& controller) override {
        std::erase_if(presented, [&](const auto& each) { return each.get() == &controller; });
    }
    void presentShareSheet(const std::vector<platform::ShareItem>& items) override {
        shareSheets.push_back(items);
    }

    platform::Screen screen{{375, 667}, 2, 2, true};
    platform::InterfaceOrientation interfaceOrientation{1};
    platform::NotificationCenter center;
    std::function<bool(const std::string& url)> opens = [](const std::string&) { return true; };
    std::vector<std::string> openedUrls;
    std::vector<Alert> alerts;
    std::vector<std::shared_ptr<platform::ViewController>> presented; ///< and not yet dismissed
    std::vector<std::vector<platform::ShareItem>> shareSheets;
};

} // namespace kestrin::test

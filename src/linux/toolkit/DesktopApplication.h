#pragma once

#include "linux/toolkit/Activity.h"
#include "linux/toolkit/GWeak.h"
#include "linux/toolkit/Presentations.h"
#include "linux/toolkit/Question.h"
#include "platform/Application.h"
#include "platform/Log.h"
#include "platform/Orientation.h"

namespace kestrin::gtk {

/// The application on the desktop. Thread: main, but for the orientation.
class DesktopApplication final : public platform::Application {
  public:
    struct Options {
        int orientation = 0;       ///< code 1..4; 0 follows the shape of the view
        platform::Size screenSize; ///< points, where the display has no monitor
    };

    DesktopApplication(const Options& options, platform::Dispatch& dispatch,
                       std::shared_ptr<platform::LogSink> log);

    /// That of the monitor with the view, else of the first monitor.
    platform::Screen mainScreen() const override;
    int orientation() const override { return m_orientation.current(); }
    platform::NotificationCenter& notifications() override { return m_center; }
    bool canOpenUrl(const std::string& url) const override;
    void openUrl(const std::string& url) override;
    void showAlert(const std::string& title, const std::string& message, const std::string& button) override;
    void present(const std::shared_ptr<platform::ViewController>& controller) override;
    void dismiss(const platform::ViewController& controller) override { m_presentations.dismiss(controller); }
    void presentShareSheet(const std::vector<platform::ShareItem>& items) override;

    /// Asks the person, over the window. The answer comes when the focus is back, so that whoever waits for
    /// it has nothing to tell of the question's own window.
    void ask(const Question& question, std::function<void(Reply)> answer);

    platform::InterfaceOrientation& interfaceOrientation() { return m_orientation; }
    /// The view that the host placed got a size. The orientation is published before the view hears of it.
    void rootAllocated(GtkWidget* root, const platform::Size& size);
    void terminate() { m_activity->terminate(); }

  private:
    GdkMonitor* monitor() const;
    /// The one with the view; null when there is none.
    GtkWindow* window() const;

    const Options m_options;
    platform::Dispatch& m_dispatch;
    const std::shared_ptr<platform::LogSink> m_log;
    platform::InterfaceOrientation m_orientation;
    platform::NotificationCenter m_center;
    const std::shared_ptr<Activity> m_activity;
    GWeak<GtkWidget> m_root;
    Presentations m_presentations;
};

} // namespace kestrin::gtk

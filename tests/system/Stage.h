#pragma once

#include "content/ContentServer.h"
#include "core/KestrinView.h"
#include "linux/LinuxPlatform.h"
#include "linux/toolkit/GRef.h"
#include "session/SourcedTracking.h"

#include <boost/json/value.hpp>
#include <gtk/gtk.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace kestrin::test {

struct StageOptions {
    std::filesystem::path page;
    std::map<std::string, boost::json::value> query; ///< of the page's address
    int width = 640, height = 480;
    int orientation = 0;
    /// Makes the world tracking for the platform's orientation; the default room at 30 frames a second when
    /// empty.
    std::function<std::shared_ptr<session::SourcedTracking>(const platform::InterfaceOrientation&)> tracking;
    std::vector<std::string> featureFlags;
};

/// A host application: a real window with a KestrinView over a session of its own, its page from a real
/// server. One a process.
class Stage {
  public:
    explicit Stage(StageOptions options);
    ~Stage();

    /// Sets the view up and starts it; also again, once it was destroyed.
    void start();
    /// Closes the window and drops the view, and makes new ones.
    void reopen();

    KestrinView& view() { return *m_view; }
    session::SourcedTracking& tracking() { return *m_tracking; }
    GtkWindow* window() { return m_window.get(); }

    /// Turns the main loop until `done`; false when that takes longer than `seconds`.
    bool runUntil(const std::function<bool()>& done, double seconds = 15);
    void runFor(double seconds);
    /// Makes one frame of a stepped session, while the main loop turns.
    bool step();
    /// The "data" of the page's newest "onWebUpdate".
    const boost::json::object& report() const { return m_report; }
    /// What the witness page was told by calls of this name, decoded, the oldest first; null for calls
    /// without a value.
    const std::vector<boost::json::value>& told(const std::string& event) { return m_told[event]; }
    void forgetTold() { m_told.clear(); }
    /// What is seen of a view and all that is in it, in device pixels; absent after some seconds without a
    /// paint.
    platform::Image capture(platform::View& view);

  private:
    void installPlatform();
    void open();
    void close();
    void keep(const boost::json::object& report);

    const StageOptions m_options;
    content::ContentServer m_server;
    std::shared_ptr<session::SourcedTracking> m_tracking;
    std::shared_ptr<KestrinView> m_view;
    gtk::GRef<GtkWindow> m_window;
    boost::json::object m_report;
    std::map<std::string, std::vector<boost::json::value>> m_told;
};

/// The built pages of web/dist.
std::filesystem::path builtPage(const std::string& name);

} // namespace kestrin::test

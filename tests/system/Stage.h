#pragma once

#include "content/ContentServer.h"
#include "core/KestrinView.h"
#include "linux/LinuxPlatform.h"
#include "linux/toolkit/GRef.h"
#include "session/Room.h"
#include "session/SourcedTracking.h"

#include <boost/json/value.hpp>
#include <gtk/gtk.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace kestrin::test {

constexpr double kPatience = 45; ///< seconds, for what a busy machine may take long for

/// One of the built pages of web/dist.
content::Application showing(const std::string& page);

struct StageOptions {
    content::Application application = showing("witness");
    std::shared_ptr<content::PictureLookup> lookup;  ///< of the server; may be null
    std::map<std::string, boost::json::value> query; ///< of the page's address
    std::string hostMap;                             ///< beside the entry of the server
    int width = 640, height = 480;
    int orientation = 0;
    std::set<std::string> granted; ///< "photos"
    /// Makes the world tracking for the platform's orientation; the room at 30 frames a second when empty.
    std::function<std::shared_ptr<session::SourcedTracking>(const platform::InterfaceOrientation&)> tracking;
    std::shared_ptr<const session::Room> room; ///< the default one when empty
};

/// Where this process keeps documents and pictures, in place of the person's own folders.
const std::filesystem::path& home();

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

    /// Of the page it shows.
    KestrinSettings settings() const;
    KestrinView& view() { return *m_view; }
    session::SourcedTracking& tracking() { return *m_tracking; }
    GtkWindow* window() { return m_window.get(); }
    /// Runs a script in the page.
    void evaluate(const std::string& script);

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
    /// What the witness page is told next by calls of this name, once the script has run; null after
    /// `kPatience`.
    boost::json::value answer(const std::string& script, const std::string& event);
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

} // namespace kestrin::test

#pragma once

#include "linux/toolkit/Activity.h"
#include "linux/toolkit/GWeak.h"
#include "linux/toolkit/SignalHandler.h"
#include "platform/Application.h"
#include "platform/Dispatch.h"
#include "platform/Log.h"

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// A modal window that offers to save, copy, open or send what is shared: the first picture, and the texts as
/// lines. Thread: main.
class ShareSheet {
  public:
    /// Over `parent`, or by itself when null. Returns at once; the sheet lives as long as its window. A
    /// failure is logged and shown.
    static void present(GtkWindow* parent, const std::vector<platform::ShareItem>& items,
                        platform::Dispatch& dispatch, std::shared_ptr<Activity> activity,
                        std::shared_ptr<platform::LogSink> log);

  private:
    struct Reporter;

    ShareSheet(GtkWindow* window, const std::vector<platform::ShareItem>& items, platform::Dispatch& dispatch,
               std::shared_ptr<Activity> activity, std::shared_ptr<Reporter> reporter);
    void take(const std::vector<platform::ShareItem>& items);
    void fill();
    void connect(GtkBuilder* builder, const char* button, bool isOffered, void (*clicked)(ShareSheet*));
    void close() { gtk_window_close(m_window); }
    void closeAfterDialog();

    void askWhereToSave();
    void save(const GRef<GFile>& file);
    void copy();
    void askWhatOpens();
    void openWith(const GRef<GAppInfo>& program);
    void sendByEmail();
    /// Writes the picture where another program can read it.
    void handOver(const std::function<void(const GRef<GFile>& picture)>& take);

    GtkWindow* const m_window; ///< owns this
    platform::Dispatch& m_dispatch;
    const std::shared_ptr<Activity> m_activity;
    const std::shared_ptr<Reporter> m_reporter;
    platform::Image m_image;
    std::string m_text;
    GRef<GtkNativeDialog> m_chooser; ///< of the place to save to, while it is open
    SignalHandler m_chosen;
};

} // namespace kestrin::gtk

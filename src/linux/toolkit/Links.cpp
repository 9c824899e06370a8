#include "linux/toolkit/Links.h"

#include "linux/toolkit/GRef.h"
#include "linux/toolkit/ValidText.h"

#include <gtk/gtk.h>

namespace kestrin::gtk {

bool hasLinkHandler(const std::string& url) {
    const char* scheme = g_uri_peek_scheme(validText(url).get());
    return scheme && GRef<GAppInfo>::adopt(g_app_info_get_default_for_uri_scheme(scheme));
}

void openLink(const std::string& url, std::shared_ptr<platform::LogSink> log) {
    using Log = std::shared_ptr<platform::LogSink>;
    const auto context =
        GRef<GdkAppLaunchContext>::adopt(gdk_display_get_app_launch_context(gdk_display_get_default()));
    const auto finish = [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Log> sink(static_cast<Log*>(data));
        GFailure failure;
        if (!g_app_info_launch_default_for_uri_finish(result, failure.out()))
            (*sink)->write(std::string("Kestrin - The address cannot be opened: ") + failure.text());
    };
    g_app_info_launch_default_for_uri_async(validText(url).get(), G_APP_LAUNCH_CONTEXT(context.get()),
                                            nullptr, finish, new Log(std::move(log)));
}

} // namespace kestrin::gtk

#pragma once

#include "linux/toolkit/RateMeter.h"
#include "linux/toolkit/SignalHandler.h"
#include "platform/WebView.h"

#include <webkit/webkit.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// The channels by which a page posts messages. Thread: main.
class ScriptMessages {
  public:
    using Handlers = std::map<std::string, std::weak_ptr<platform::ScriptMessageHandler>>;

    explicit ScriptMessages(const Handlers& handlers);

    WebKitUserContentManager* manager() const { return m_manager.get(); }

  private:
    struct Channel {
        std::string name;
        std::weak_ptr<platform::ScriptMessageHandler> handler;
        RateMeter meter{"messages of the page"};
    };
    static void receive(WebKitUserContentManager* manager, JSCValue* value, Channel* channel);

    const GRef<WebKitUserContentManager> m_manager =
        GRef<WebKitUserContentManager>::adopt(webkit_user_content_manager_new());
    std::vector<std::unique_ptr<Channel>> m_channels;
    std::vector<SignalHandler> m_signals;
};

} // namespace kestrin::gtk

#include "linux/web/ScriptMessages.h"

namespace kestrin::gtk {

ScriptMessages::ScriptMessages(const Handlers& handlers) {
    for (const auto& [name, handler] : handlers) {
        m_channels.push_back(std::make_unique<Channel>(Channel{name, handler}));
        m_signals.emplace_back(m_manager.get(), ("script-message-received::" + name).c_str(),
                               G_CALLBACK(receive), m_channels.back().get());
        webkit_user_content_manager_register_script_message_handler(m_manager.get(), name.c_str(), nullptr);
    }
}

void ScriptMessages::receive(WebKitUserContentManager*, JSCValue* value, Channel* channel) {
    channel->meter.count();
    const auto handler = channel->handler.lock();
    if (!handler || !jsc_value_is_string(value))
        return;
    // As bytes, since a text may hold NUL.
    const GData bytes(jsc_value_to_string_as_bytes(value));
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    // The handler may destroy the web view and the channel with it.
    const std::string name = channel->name;
    handler->didReceiveScriptMessage(name, {data, size});
}

} // namespace kestrin::gtk

#include "linux/toolkit/Resources.h"

#include "linux/toolkit/GRef.h"

#include <gio/gio.h>

extern "C" void kestrin_resources_register_resource(void);

namespace kestrin::gtk {

namespace {

// A static library's own registration would be dropped by the linker.
void registerResources() {
    static const bool done = [] {
        kestrin_resources_register_resource();
        return true;
    }();
    (void)done;
}

} // namespace

std::string resourcePath(const std::string& name) {
    registerResources();
    return "/org/kestrin/" + name;
}

std::optional<std::string> resourceText(const std::string& name) {
    const GData bytes(
        g_resources_lookup_data(resourcePath(name).c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
    if (!bytes)
        return std::nullopt;
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    return std::string(data, size);
}

} // namespace kestrin::gtk

#include "linux/network/DataAddress.h"

#include "linux/toolkit/GRef.h"

#include <libsoup/soup.h>

namespace kestrin::gtk {

bool isDataAddress(const std::string& url) { return g_ascii_strncasecmp(url.c_str(), "data:", 5) == 0; }

std::optional<std::string> decodeDataAddress(const std::string& url) {
    // The library takes an address without a comma for one without data.
    const GData data(url.find(',') == url.npos ? nullptr : soup_uri_decode_data_uri(url.c_str(), nullptr));
    if (!data)
        return std::nullopt;
    gsize size = 0;
    const auto* bytes = static_cast<const char*>(g_bytes_get_data(data.get(), &size));
    return std::string(bytes ? bytes : "", size);
}

} // namespace kestrin::gtk

#pragma once

#include "linux/toolkit/GRef.h"

#include <optional>
#include <string>

namespace kestrin::gtk {

using GAddress = GOwned<GUri, g_uri_unref>;

/// Null unless it can be requested: an absolute http or https address with a host, of the characters that an
/// address may have.
GAddress parseHttpAddress(const std::string& url);
/// Where a redirect from `from` leads, as text; none when it does not lead to what can be requested.
std::optional<std::string> resolveRedirect(const std::string& from, const char* location);

} // namespace kestrin::gtk

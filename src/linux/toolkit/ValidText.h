#pragma once

#include "linux/toolkit/GRef.h"

#include <string>

namespace kestrin::gtk {

/// The text as GTK accepts it: what is no UTF-8 becomes replacement characters.
inline GText validText(const std::string& text) {
    return GText(g_utf8_make_valid(text.data(), gssize(text.size())));
}

} // namespace kestrin::gtk

#pragma once

#include "linux/network/HostMap.h"
#include "linux/toolkit/GRef.h"

#include <gio/gio.h>

#include <string>

namespace kestrin::gtk {

/// An address that carries `host` as its name, for the certificate and the TLS server name, and connects to
/// `target`. Thread: any.
GRef<GSocketConnectable> makeMappedAddress(const std::string& host, const HostMap::Target& target);

} // namespace kestrin::gtk

#pragma once

#include "content/GPointer.h"

#include <string>
#include <vector>

namespace kestrin::content {

/// A new self-signed certificate (ECDSA, P-256, one year) with its private key, which never touches the disk.
/// `names` are host names and addresses it answers for; the first is its subject. Throws std::runtime_error.
GPointer<GTlsCertificate> makeCertificate(const std::vector<std::string>& names);

} // namespace kestrin::content

#pragma once

#include "platform/ArSession.h"

#include <memory>

namespace kestrin::session {

class Field;

// Parts of a recording's lines. All throw FieldError.

/// A rotation and a translation.
platform::Matrix readPose(const Field& field);
platform::Intrinsics readIntrinsics(const Field& field);
/// A picture that was recognised has a reference image with a name and a width, but without pixels.
std::shared_ptr<const platform::ArAnchor> readAnchor(const Field& field);

} // namespace kestrin::session

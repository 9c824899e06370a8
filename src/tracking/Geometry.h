#pragma once

#include "platform/Matrix.h"

namespace kestrin {

/// View-space geometry over camera and anchor transforms: right-handed, y up, metres; column 3 is the
/// position. The direction functions give unit vectors with w = 0. Thread: any.

/// The matrix's column 3, unchanged.
platform::Vector4 calc_position(const platform::Matrix& matrix);
/// left x right.
platform::Matrix calc_view_unscaled(const platform::Matrix& left, const platform::Matrix& right);

/// +Z of a unit quaternion, and its opposite.
platform::Vector4 calc_forward(const platform::Quaternion& rotation);
platform::Vector4 calc_back(const platform::Quaternion& rotation);
/// +Y, and its opposite.
platform::Vector4 calc_up(const platform::Quaternion& rotation);
platform::Vector4 calc_down(const platform::Quaternion& rotation);
/// +X is called left and -X right, as they are for someone who looks along +Z.
platform::Vector4 calc_left(const platform::Quaternion& rotation);
platform::Vector4 calc_right(const platform::Quaternion& rotation);

/// The signed distance of the object's position along the viewer's `calc_left` axis, metres.
float is_behind(const platform::Matrix& viewer, const platform::Matrix& object);

/// The rotation in the upper-left 3x3 block, taken as it stands: neither orthonormalised nor normalised, and
/// of either sign.
platform::Quaternion simd_quaternion(const platform::Matrix& matrix);

} // namespace kestrin

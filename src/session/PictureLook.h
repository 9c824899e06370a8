#pragma once

#include "platform/Image.h"

#include <array>

namespace kestrin::session {

/// What a picture roughly looks like: the mean brightness of 12 by 12 fields. Scaling and JPEG hardly change
/// it.
class PictureLook {
  public:
    explicit PictureLook(const platform::Image& image);
    /// An absent picture resembles none.
    bool resembles(const PictureLook& other) const;

  private:
    static constexpr int kSide = 12;
    std::array<float, std::size_t(kSide) * kSide> m_fields{};
    bool m_isValid;
};

} // namespace kestrin::session

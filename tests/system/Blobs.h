#pragma once

#include "platform/Image.h"

#include <array>
#include <optional>
#include <vector>

namespace kestrin::test {

struct Blob {
    platform::Point centre; ///< pixels; (0, 0) is the top-left corner of the top-left pixel
    double area = 0;        ///< pixels
    bool touchesEdge = false;
};

/// The discs of `color` that `with` shows and `without`, the same picture but for them, does not.
std::vector<Blob> findDiscs(const platform::Image& with, const platform::Image& without,
                            const std::array<double, 3>& color);

/// The dark disc in a bright square nearest to `near`, at most `reach` pixels away; none when there is none.
std::optional<Blob> findMark(const platform::Image& image, const platform::Point& near, double reach);

double distance(const platform::Point& a, const platform::Point& b);

} // namespace kestrin::test

#include "session/PictureLook.h"

#include <cmath>
#include <span>

namespace kestrin::session {

namespace {

constexpr float kAlike = 6; // mean difference in brightness, of 255

float brightness(std::span<const std::uint8_t> pixels, std::size_t index) {
    const std::uint8_t* p = &pixels[index * 4];
    return 0.299F * p[0] + 0.587F * p[1] + 0.114F * p[2];
}

} // namespace

PictureLook::PictureLook(const platform::Image& image)
    : m_isValid(image.pixelWidth() >= kSide && image.pixelHeight() >= kSide) {
    const auto pixels = image.pixels();
    for (int field = 0; m_isValid && field < kSide * kSide; ++field) {
        const int left = field % kSide * image.pixelWidth() / kSide,
                  top = field / kSide * image.pixelHeight() / kSide;
        const int right = (field % kSide + 1) * image.pixelWidth() / kSide;
        const int bottom = (field / kSide + 1) * image.pixelHeight() / kSide;
        float sum = 0;
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                sum += brightness(pixels, std::size_t(y) * std::size_t(image.pixelWidth()) + std::size_t(x));
        m_fields[std::size_t(field)] = sum / float((right - left) * (bottom - top));
    }
}

bool PictureLook::resembles(const PictureLook& other) const {
    float difference = 0;
    for (std::size_t i = 0; i < m_fields.size(); ++i)
        difference += std::abs(m_fields[i] - other.m_fields[i]);
    return m_isValid && other.m_isValid && difference / float(m_fields.size()) < kAlike;
}

} // namespace kestrin::session

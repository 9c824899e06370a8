#pragma once

#include "platform/Vision.h"

#include <map>
#include <mutex>
#include <utility>

namespace kestrin::test {

/// Sees in each picture what the test put there. Thread: any.
class FakeVision : public platform::Vision {
  public:
    std::vector<platform::BarcodeObservation> perform(const platform::BarcodeRequest& request,
                                                      const platform::PixelBuffer& picture,
                                                      platform::PictureOrientation) override {
        const std::lock_guard lock(m_mutex);
        const auto codes = m_codes.find(&picture);
        return codes == m_codes.end() || request.symbologies.empty() ? Codes{} : codes->second;
    }

    using Codes = std::vector<platform::BarcodeObservation>;
    void show(const platform::PixelBufferRef& picture, Codes codes) {
        const std::lock_guard lock(m_mutex);
        m_codes[picture.get()] = std::move(codes);
    }

  private:
    std::mutex m_mutex;
    std::map<const platform::PixelBuffer*, Codes> m_codes;
};

} // namespace kestrin::test

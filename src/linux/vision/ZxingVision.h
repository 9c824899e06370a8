#pragma once

#include "platform/Vision.h"

namespace kestrin::gtk {

/// Reads barcodes off the luma plane, in place. Codes are found however they are turned. Thread: any.
class ZxingVision final : public platform::Vision {
  public:
    std::vector<platform::BarcodeObservation> perform(const platform::BarcodeRequest& request,
                                                      const platform::PixelBuffer& picture,
                                                      platform::PictureOrientation orientation) override;
};

} // namespace kestrin::gtk

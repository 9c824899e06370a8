#pragma once

#include "platform/Capture.h"

#include <optional>
#include <string>
#include <vector>

namespace kestrin::platform {

enum class BarcodeSymbology { qr };

/// How a picture lies: up when its first row is the top of what it shows.
enum class PictureOrientation { up = 1 };

/// What to look for in a picture.
struct BarcodeRequest {
    std::vector<BarcodeSymbology> symbologies; ///< only these are found
};

struct BarcodeObservation {
    std::optional<std::string> payload; ///< UTF-8; absent when the code holds no text
};

/// Looks at pictures.
class Vision {
  public:
    virtual ~Vision() = default;
    /// Every barcode of the picture; none when it cannot be looked at. Takes milliseconds; does not keep or
    /// copy the picture. Thread: any, several calls may run at once.
    virtual std::vector<BarcodeObservation> perform(const BarcodeRequest& request, const PixelBuffer& picture,
                                                    PictureOrientation orientation) = 0;
};

} // namespace kestrin::platform

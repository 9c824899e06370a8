#pragma once

#include "platform/Vision.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kestrin {

/// Finds QR codes in camera pictures that it is given while someone listens. Thread: any; listeners are
/// called on main.
class KestrinQRScanner : public std::enable_shared_from_this<KestrinQRScanner> {
  public:
    using Callback = std::function<void(const std::string& text)>;

    static std::shared_ptr<KestrinQRScanner> getInstance();
    /// Whether the feature flags allow scanning now.
    static bool isSupported();
    KestrinQRScanner();

    /// Whether they did when the scanner was made.
    bool supported() const { return _canSupport; }

    /// Arms the one-shot listener instead of any armed before. It is called for each text of the first
    /// picture with a code, then never again.
    void scan(Callback callback);
    void cancelScan();
    /// Arms the listener that hears every text of every picture until it is stopped.
    void startRealtimeScan(Callback callback);
    void stopRealtimeScan();
    bool wantsScan() const;

    /// Looks at the picture on a worker, which holds it until then. Every picture is taken: who gives them
    /// bounds their number.
    void onScan(platform::PixelBufferRef buffer, platform::PictureOrientation orientation);

  private:
    void detect(const platform::PixelBuffer& picture, platform::PictureOrientation orientation);
    void onResults(const std::vector<platform::BarcodeObservation>& results);
    static void sendData(const Callback& callback, const std::optional<std::string>& content);

    mutable std::mutex m_mutex; ///< guards the callbacks
    Callback _callback;
    Callback _realtimeCallback;
    bool _canSupport = false;                        ///< fixed when made
    std::vector<platform::BarcodeRequest> _requests; ///< fixed when made
};

} // namespace kestrin

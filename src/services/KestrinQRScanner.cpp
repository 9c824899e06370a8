#include "services/KestrinQRScanner.h"

#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Singleton.h"
#include "services/util/SystemLevel.h"

#include <utility>

namespace kestrin {

using namespace platform;

namespace {

bool systemCanDetect() { return systemIsAtLeast(11.0); }

} // namespace

std::shared_ptr<KestrinQRScanner> KestrinQRScanner::getInstance() { return singleton<KestrinQRScanner>(); }

bool KestrinQRScanner::isSupported() {
    return systemCanDetect() && KestrinFeatureFlags::getInstance()->containsFlag("qrscanner");
}

KestrinQRScanner::KestrinQRScanner() {
    if (!systemCanDetect())
        return;
    _canSupport = isSupported();
    _requests.push_back({{BarcodeSymbology::qr}});
}

void KestrinQRScanner::scan(Callback callback) {
    const std::lock_guard lock(m_mutex);
    _callback.swap(callback);
}

void KestrinQRScanner::cancelScan() { scan(nullptr); }

void KestrinQRScanner::startRealtimeScan(Callback callback) {
    const std::lock_guard lock(m_mutex);
    _realtimeCallback.swap(callback);
}

void KestrinQRScanner::stopRealtimeScan() { startRealtimeScan(nullptr); }

bool KestrinQRScanner::wantsScan() const {
    const std::lock_guard lock(m_mutex);
    return _canSupport && (_callback || _realtimeCallback);
}

void KestrinQRScanner::onScan(PixelBufferRef buffer, PictureOrientation orientation) {
    if (!_canSupport || !buffer)
        return;
    platform::platform().dispatch().globalAsync([self = shared_from_this(), buffer = std::move(buffer),
                                                 orientation] { self->detect(*buffer, orientation); });
}

void KestrinQRScanner::detect(const PixelBuffer& picture, PictureOrientation orientation) {
    for (const BarcodeRequest& request : _requests)
        onResults(platform::platform().vision().perform(request, picture, orientation));
}

void KestrinQRScanner::onResults(const std::vector<BarcodeObservation>& results) {
    if (results.empty())
        return;
    Callback once, always;
    {
        // Disarmed as it is taken: of several pictures looked at side by side, one answers.
        const std::lock_guard lock(m_mutex);
        once = std::exchange(_callback, nullptr);
        always = _realtimeCallback;
    }
    for (const BarcodeObservation& result : results) {
        sendData(once, result.payload);
        sendData(always, result.payload);
    }
}

void KestrinQRScanner::sendData(const Callback& callback, const std::optional<std::string>& content) {
    if (callback && content)
        platform::platform().dispatch().mainAsync([callback, text = *content] { callback(text); });
}

} // namespace kestrin

#include "session/recording/Sources.h"

#include "session/CameraTracking.h"
#include "session/RoomFile.h"
#include "session/SimulatedTracking.h"
#include "session/recording/RecordedTracking.h"

#include <stdexcept>
#include <variant>

namespace kestrin::session {

namespace {

std::shared_ptr<RecordedTracking> open(const RecordedOptions& options) {
    auto opened = RecordedTracking::open(options);
    if (const auto* wrong = std::get_if<RecordingError>(&opened))
        throw std::runtime_error(wrong->text);
    return std::get<std::shared_ptr<RecordedTracking>>(std::move(opened));
}

} // namespace

TrackingSource simulation(const std::filesystem::path& file) {
    SimulatedOptions options;
    options.mounting = Mounting::upright;
    if (!file.empty()) {
        auto room = loadRoom(file);
        if (const auto* wrong = std::get_if<std::string>(&room))
            throw std::runtime_error(*wrong);
        options.room = std::get<std::shared_ptr<const Room>>(std::move(room));
    }
    return [options](const platform::InterfaceOrientation& orientation) mutable {
        options.session.orientation = &orientation;
        return std::make_shared<SimulatedTracking>(options);
    };
}

TrackingSource recording(const std::filesystem::path& folder) {
    RecordedOptions options;
    options.folder = folder;
    options.loops = true;
    open(options); // what is wrong with it is said now
    return [options](const platform::InterfaceOrientation& orientation) mutable {
        options.session.orientation = &orientation;
        return open(options);
    };
}

TrackingSource camera() {
    return [](const platform::InterfaceOrientation& orientation) {
        CameraOptions options;
        options.session.orientation = &orientation;
        return std::make_shared<CameraTracking>(options);
    };
}

} // namespace kestrin::session

#include "Tracking.h"

#include "session/CameraTracking.h"
#include "session/RoomFile.h"
#include "session/SimulatedTracking.h"
#include "session/recording/RecordedTracking.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <utility>
#include <variant>

namespace kestrin::view {

namespace {

session::Mounting mountingIn(const Arguments& arguments) {
    return arguments.turnsWithDevice ? session::Mounting::turned : session::Mounting::upright;
}

std::shared_ptr<session::SourcedTracking> ofCamera(const Arguments& arguments,
                                                   session::SessionOptions session) {
    session::CameraOptions options;
    options.width = arguments.camera->width;
    options.height = arguments.camera->height;
    options.mounting = mountingIn(arguments);
    options.session = std::move(session);
    return std::make_shared<session::CameraTracking>(options);
}

std::shared_ptr<session::SourcedTracking> simulated(const Arguments& arguments,
                                                    session::SessionOptions session) {
    session::SimulatedOptions options;
    options.session = std::move(session);
    options.mounting = mountingIn(arguments);
    if (arguments.room) {
        auto room = session::loadRoom(*arguments.room);
        if (const auto* wrong = std::get_if<std::string>(&room))
            throw std::runtime_error(*wrong);
        options.room = std::get<std::shared_ptr<const session::Room>>(room);
    }
    return std::make_shared<session::SimulatedTracking>(options);
}

std::shared_ptr<session::SourcedTracking> recorded(const Arguments& arguments,
                                                   session::SessionOptions session) {
    session::RecordedOptions options;
    options.folder = *arguments.recording;
    options.damage = arguments.tolerant ? session::Damage::tolerated : session::Damage::refused;
    options.loops = arguments.loops;
    options.session = std::move(session);
    auto tracking = session::RecordedTracking::open(options);
    if (const auto* wrong = std::get_if<session::RecordingError>(&tracking))
        throw std::runtime_error(wrong->text);
    const auto& opened = std::get<std::shared_ptr<session::RecordedTracking>>(tracking);
    if (opened->damage())
        std::fprintf(stderr, "kestrin-view: played up to the damage: %s\n", opened->damage()->text.c_str());
    return opened;
}

} // namespace

std::shared_ptr<session::SourcedTracking> makeTracking(const Arguments& arguments,
                                                       session::SessionOptions session) {
    using session::Pacing;
    session.pacing = arguments.steps               ? Pacing::stepped
                     : std::isinf(arguments.speed) ? Pacing::asTaken
                                                   : Pacing::realTime;
    session.speed = arguments.speed;
    if (arguments.camera)
        return ofCamera(arguments, std::move(session));
    return arguments.recording ? recorded(arguments, std::move(session))
                               : simulated(arguments, std::move(session));
}

} // namespace kestrin::view

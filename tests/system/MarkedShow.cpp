#include "MarkedShow.h"

#include "Blobs.h"

#include "session/RoomFile.h"
#include "session/SimulatedTracking.h"

#include <boost/json/parse.hpp>

#include <algorithm>

namespace kestrin::test {

namespace {

constexpr double kSecondsAPose =
    2.5; ///< of the camera's path, so that two frames are never taken for one another
constexpr double kMarkRadius = 0.022, kMarkWidth = 0.1; ///< metres
constexpr double kTableTop = 0.7505;                    ///< metres above the floor
constexpr double kDiscRadius = 6.5;                     ///< points
constexpr double kReach = 20;  ///< pixels around a disc in which its mark is looked for, in a picture of 640
constexpr double kMissed = 99; ///< pixels, for a disc without a mark
constexpr std::array<double, 3> kMagenta{255, 0, 255};

/// On the table: never hidden, whichever way the camera goes round it.
std::vector<session::Vector3> markPoints() {
    std::vector<session::Vector3> points;
    for (const float x : {-0.36F, -0.12F, 0.12F, 0.36F})
        for (const float z : {-0.24F, 0.0F})
            points.push_back({x, float(kTableTop), z});
    return points;
}

std::shared_ptr<const session::Room> markedRoom() {
    auto room = std::make_shared<session::Room>(*session::defaultRoom());
    for (const session::Vector3& point : markPoints())
        room->marks.push_back({session::Quad::facing({0, 1, 0}, {0, 0, -1}, point, kMarkWidth, kMarkWidth),
                               float(kMarkRadius)});
    return room;
}

StageOptions stageOptions(const MarkedOptions& marked) {
    StageOptions options;
    options.application = showing("align");
    boost::json::array points;
    for (const session::Vector3& point : markPoints())
        points.push_back({point.x, point.y, point.z});
    options.query = {{"points", points}, {"fault", boost::json::parse(marked.fault)}};
    options.orientation = marked.orientation;
    if (marked.orientation == 1 || marked.orientation == 2)
        std::swap(options.width, options.height);
    options.tracking = [mounting = marked.mounting](const platform::InterfaceOrientation& orientation) {
        session::SimulatedOptions simulation;
        simulation.room = markedRoom();
        simulation.rate = 1 / kSecondsAPose;
        simulation.mounting = mounting;
        simulation.session.pacing = session::Pacing::stepped;
        simulation.session.orientation = &orientation;
        return std::make_shared<session::SimulatedTracking>(simulation);
    };
    return options;
}

} // namespace

MarkedShow::MarkedShow(const MarkedOptions& options) : SteppedShow(stageOptions(options)) {}

Spread MarkedShow::measure(int poses) {
    std::vector<double> distances;
    for (int pose = 0; pose < poses && next(); ++pose) {
        const auto [shorter, longer] = std::minmax(camera().pixelWidth(), camera().pixelHeight());
        const double reach = kReach * std::max(1.0, std::max(longer / 640.0, shorter / 480.0));
        const double density = composed().pixelWidth() / stage().view().frame().size.width;
        for (const platform::Point& disc : discs(kMagenta, kDiscRadius * density)) {
            const auto mark = findMark(camera(), disc, reach);
            distances.push_back(mark ? distance(mark->centre, disc) : kMissed);
        }
    }
    return Spread(distances);
}

} // namespace kestrin::test

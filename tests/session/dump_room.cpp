// Draws a room as the scripted camera sees it, for a person to look at:
//   dump_room OUT.png [SECONDS [WIDTH HEIGHT [ROOM.json]]]

#include "Png.h"
#include "session/RoomFile.h"
#include "session/RoomRenderer.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace kestrin::session;

int main(int count, char** words) {
    const double seconds = count > 2 ? std::atof(words[2]) : 0;
    const int width = count > 4 ? std::atoi(words[3]) : 640, height = count > 4 ? std::atoi(words[4]) : 480;
    RoomResult room = count > 5 ? loadRoom(words[5]) : RoomResult(defaultRoom());
    if (count < 2 || room.index() == 1) {
        std::fprintf(stderr, "%s\n", count < 2 ? "dump_room OUT.png ..." : std::get<1>(room).c_str());
        return 1;
    }
    const double focal = width / 1.2;
    const CameraModel model{{focal, focal, width / 2.0, height / 2.0}, width, height, Mounting::upright};
    auto renderer = RoomRenderer::make(*std::get<0>(room), model);
    if (renderer.index() == 1) {
        std::fprintf(stderr, "%s\n", std::get<1>(renderer).c_str());
        return 1;
    }
    Nv12Buffer picture(width, height);
    std::get<0>(renderer)->render(std::get<0>(room)->path.poseAt(seconds), picture);
    return test::writePng(picture, words[1]) ? 0 : 1;
}

#pragma once

#include "linux/toolkit/StructuredLog.h"

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace kestrin::view {

/// A camera to show instead of a session that knows where it is.
struct CameraArguments {
    std::string name;              ///< or a part of it, or a device file; "test"; "file:" and a video's path
    int width = 640, height = 480; ///< pixels
    bool isMirrored = false;
};

/// What the command line asks for.
struct Arguments {
    std::filesystem::path page;                ///< a page, or a folder with index.html; unless there is a key
    std::optional<std::string> key;            ///< the key string of an application that is served elsewhere
    std::optional<std::filesystem::path> room; ///< of the simulated session; the built-in room when absent
    std::optional<std::filesystem::path> recording; ///< to play instead of a simulated session
    std::optional<CameraArguments> camera;
    bool listsCameras = false;                   ///< instead of showing anything
    std::optional<std::filesystem::path> record; ///< where to keep what the session sees
    bool tolerant = false;                       ///< plays a damaged recording up to the damage
    bool loops = false;
    bool steps = false;            ///< frame by frame
    double speed = 1;              ///< times real time; infinite: as fast as frames are taken
    int width = 960, height = 600; ///< of the view, points
    int orientation = 0;           ///< 1..4, or 0: from the shape of the view
    bool turnsWithDevice = false;  ///< the camera's mounting
    std::optional<int> frames;     ///< ends after so many frames of the session
    std::optional<std::filesystem::path> screenshot;
    gtk::LogLevel logLevel = gtk::LogLevel::info;
    bool strictTls = false;           ///< certificates are checked
    std::vector<std::string> hostMap; ///< HOST=ADDRESS:PORT each
    std::set<std::string> granted;    ///< "camera", "photos": nobody is asked for them
    bool forgetsPermissions = false;  ///< instead of showing anything
};

/// What the program does instead of showing a view: it prints `text` and ends with `status`.
struct Ending {
    int status = 0;
    std::string text;
};

/// Reads and checks the command line. `--help` prints and ends the process.
std::variant<Arguments, Ending> parseArguments(int argc, char** argv);

} // namespace kestrin::view

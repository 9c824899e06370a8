#include "Arguments.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>

namespace kestrin::view {

namespace {

constexpr std::string_view kSimulate = "simulate";
constexpr std::string_view kRecording = ".krs";
constexpr std::string_view kFastest = "max";
constexpr double kHighestSpeed = 1000;
constexpr int kFramesBeforeScreenshot = 90;

/// The options as GLib hands them over.
struct Raw {
    char* page = nullptr;
    char* key = nullptr;
    char* session = nullptr;
    char* size = nullptr;
    char* orientation = nullptr;
    char* mounting = nullptr;
    char* frames = nullptr;
    char* screenshot = nullptr;
    char* logLevel = nullptr;
    char* record = nullptr;
    char* speed = nullptr;
    char* grant = nullptr;
    char* camera = nullptr;
    char* cameraSize = nullptr;
    char** hostMap = nullptr;
    gboolean version = FALSE, steps = FALSE, loops = FALSE, tolerant = FALSE, forgets = FALSE;
    gboolean mirrors = FALSE, listsCameras = FALSE, strictTls = FALSE;

    ~Raw() {
        for (char* text : {page, key, session, size, orientation, mounting, frames, screenshot, logLevel,
                           record, speed, grant, camera, cameraSize})
            g_free(text);
        g_strfreev(hostMap);
    }
};

Ending failure(const std::string& text) { return {2, "kestrin-view: " + text}; }

std::optional<int> positive(std::string_view text, int most) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && value > 0 && value <= most ? std::optional(value) : std::nullopt;
}

/// Takes one option into the arguments; says what is wrong with it, or nothing.
using Reader = std::string (*)(std::string_view text, Arguments& arguments);

std::string readPage(std::string_view text, Arguments& arguments) {
    arguments.page = text;
    const auto index =
        std::filesystem::is_directory(arguments.page) ? arguments.page / "index.html" : arguments.page;
    return std::filesystem::is_regular_file(index) ? "" : "--page: no such file: " + index.string();
}

std::string readKey(std::string_view text, Arguments& arguments) {
    arguments.key = text;
    return "";
}

/// A folder's name as it is after a shell has completed it, without the last slash.
std::filesystem::path folderName(std::string_view text) {
    const std::filesystem::path name(text);
    return name.has_filename() ? name : name.parent_path();
}

std::string readSession(std::string_view text, Arguments& arguments) {
    if (text == kSimulate)
        return "";
    if (const auto folder = folderName(text); folder.extension() == kRecording) {
        arguments.recording = folder;
        return std::filesystem::is_directory(folder) ? ""
                                                     : "--session: no such recording: " + folder.string();
    }
    if (!text.starts_with(kSimulate) || text.size() < kSimulate.size() + 2 || text[kSimulate.size()] != ':')
        return "--session: expected simulate, simulate:ROOM.json or FILE.krs, not '" + std::string(text) +
               "'";
    arguments.room = text.substr(kSimulate.size() + 1);
    return std::filesystem::is_regular_file(*arguments.room)
               ? ""
               : "--session: no such file: " + arguments.room->string();
}

std::string readRecord(std::string_view text, Arguments& arguments) {
    arguments.record = folderName(text);
    if (arguments.record->extension() != kRecording)
        return "--record: expected a name like desk.krs, not '" + std::string(text) + "'";
    return std::filesystem::exists(*arguments.record)
               ? "--record: there is one already: " + arguments.record->string()
               : "";
}

std::string readSpeed(std::string_view text, Arguments& arguments) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    if (text == kFastest)
        arguments.speed = std::numeric_limits<double>::infinity();
    else if (whole && value > 0 && value <= kHighestSpeed)
        arguments.speed = value;
    else
        return "--speed: expected a number above 0, such as 0.5 or 4, or max, not '" + std::string(text) +
               "'";
    return "";
}

/// Of pixels or points; none for anything else.
std::optional<std::pair<int, int>> sizeIn(std::string_view text) {
    const auto cross = text.find('x');
    const auto width = positive(text.substr(0, cross), 16384);
    const auto height = cross == text.npos ? std::nullopt : positive(text.substr(cross + 1), 16384);
    return width && height ? std::optional(std::pair(*width, *height)) : std::nullopt;
}

std::string readSize(std::string_view text, Arguments& arguments) {
    const auto size = sizeIn(text);
    if (!size)
        return "--size: expected WIDTHxHEIGHT, such as 960x600, not '" + std::string(text) + "'";
    std::tie(arguments.width, arguments.height) = *size;
    return "";
}

std::string readCamera(std::string_view text, Arguments& arguments) {
    arguments.camera.emplace().name = text;
    return text.empty() ? "--camera: which one? --list-cameras tells" : "";
}

std::string readCameraSize(std::string_view text, Arguments& arguments) {
    const auto size = sizeIn(text);
    if (!size || size->first < 16 || size->second < 16 || size->first > 8192 || size->second > 8192)
        return "--camera-size: expected WIDTHxHEIGHT, such as 1280x720, not '" + std::string(text) + "'";
    std::tie(arguments.camera->width, arguments.camera->height) = *size;
    return "";
}

std::string readOrientation(std::string_view text, Arguments& arguments) {
    constexpr std::array<std::string_view, 4> kNames{"portrait", "portrait-down", "landscape-right",
                                                     "landscape-left"};
    for (std::size_t i = 0; i < kNames.size(); ++i)
        if (text == kNames[i])
            arguments.orientation = int(i) + 1;
    if (arguments.orientation == 0)
        return "--orientation: expected portrait, portrait-down, landscape-right or landscape-left, not '" +
               std::string(text) + "'";
    return "";
}

std::string readMounting(std::string_view text, Arguments& arguments) {
    if (text != "turned" && text != "upright")
        return "--mounting: expected turned or upright, not '" + std::string(text) + "'";
    arguments.turnsWithDevice = text == "turned";
    return "";
}

std::string readFrames(std::string_view text, Arguments& arguments) {
    arguments.frames = positive(text, 100'000'000);
    return arguments.frames ? "" : "--frames: expected a number above 0, not '" + std::string(text) + "'";
}

std::string readScreenshot(std::string_view text, Arguments& arguments) {
    arguments.screenshot = text;
    const auto folder = std::filesystem::absolute(*arguments.screenshot).parent_path();
    if (arguments.screenshot->extension() != ".png")
        return "--screenshot: expected a file named *.png, not '" + std::string(text) + "'";
    return std::filesystem::is_directory(folder) ? "" : "--screenshot: no such folder: " + folder.string();
}

std::string readLogLevel(std::string_view text, Arguments& arguments) {
    constexpr std::array<std::pair<std::string_view, gtk::LogLevel>, 3> kLevels{
        {{"off", gtk::LogLevel::off}, {"info", gtk::LogLevel::info}, {"debug", gtk::LogLevel::debug}}};
    const auto found = std::ranges::find(kLevels, text, [](const auto& level) { return level.first; });
    if (found == kLevels.end())
        return "--log-level: expected off, info or debug, not '" + std::string(text) + "'";
    arguments.logLevel = found->second;
    return "";
}

std::string readGrant(std::string_view text, Arguments& arguments) {
    while (!text.empty()) {
        const auto name = text.substr(0, text.find(','));
        if (name != "camera" && name != "photos")
            return "--grant: expected camera, photos or camera,photos, not '" + std::string(name) + "'";
        arguments.granted.emplace(name);
        text.remove_prefix(std::min(text.size(), name.size() + 1));
    }
    return "";
}

/// What does not go together; nothing when all does.
std::string contradiction(const Raw& raw, const Arguments& arguments) {
    if (raw.page && raw.key)
        return "--key: does not go with --page";
    if (raw.camera && raw.session)
        return "--camera: does not go with --session";
    if (raw.camera && (raw.speed || arguments.steps))
        return std::string(arguments.steps ? "--step" : "--speed") + ": does not go with --camera";
    if (arguments.recording && raw.mounting)
        return "--mounting: a recording has that of its own camera";
    if (!arguments.recording && (arguments.loops || arguments.tolerant))
        return std::string(arguments.loops ? "--loop" : "--tolerant") + ": goes with --session FILE.krs";
    if (arguments.steps && raw.speed)
        return "--speed: does not go with --step";
    return "";
}

std::variant<Arguments, Ending> checked(const Raw& raw) {
    const std::array<std::pair<const char*, Reader>, 14> readers{{{raw.page, readPage},
                                                                  {raw.key, readKey},
                                                                  {raw.session, readSession},
                                                                  {raw.size, readSize},
                                                                  {raw.orientation, readOrientation},
                                                                  {raw.mounting, readMounting},
                                                                  {raw.frames, readFrames},
                                                                  {raw.screenshot, readScreenshot},
                                                                  {raw.logLevel, readLogLevel},
                                                                  {raw.record, readRecord},
                                                                  {raw.speed, readSpeed},
                                                                  {raw.grant, readGrant},
                                                                  {raw.camera, readCamera},
                                                                  {raw.cameraSize, readCameraSize}}};
    Arguments arguments;
    arguments.steps = raw.steps != FALSE;
    arguments.loops = raw.loops != FALSE;
    arguments.tolerant = raw.tolerant != FALSE;
    arguments.forgetsPermissions = raw.forgets != FALSE;
    arguments.listsCameras = raw.listsCameras != FALSE;
    arguments.strictTls = raw.strictTls != FALSE;
    if (!raw.camera && (raw.cameraSize || raw.mirrors))
        return failure(std::string(raw.mirrors ? "--mirror" : "--camera-size") + ": goes with --camera");
    for (const auto& [text, read] : readers) {
        const std::string wrong = text ? read(text, arguments) : "";
        if (!wrong.empty())
            return failure(wrong);
    }
    if (arguments.camera)
        arguments.camera->isMirrored = raw.mirrors != FALSE;
    if (const std::string wrong = contradiction(raw, arguments); !wrong.empty())
        return failure(wrong);
    for (char** entry = raw.hostMap; entry && *entry; ++entry)
        arguments.hostMap.emplace_back(*entry);
    if (arguments.screenshot && !arguments.frames)
        arguments.frames = kFramesBeforeScreenshot;
    if (!raw.page && !raw.key && !raw.forgets && !raw.listsCameras)
        return failure("which page? Name it with --page FILE|FOLDER or --key TEXT (see --help)");
    return arguments;
}

} // namespace

std::variant<Arguments, Ending> parseArguments(int argc, char** argv) {
    Raw raw;
    const GOptionEntry entries[] = {
        {"page", 'p', 0, G_OPTION_ARG_FILENAME, &raw.page, "The page to show, or a folder with index.html",
         "FILE|FOLDER"},
        {"key", 'k', 0, G_OPTION_ARG_STRING, &raw.key,
         "The key string of an application that a server has, instead of --page", "TEXT"},
        {"session", 's', 0, G_OPTION_ARG_FILENAME, &raw.session,
         "Where tracking comes from (default: simulate, the built-in room)", "simulate[:ROOM.json]|FILE.krs"},
        {"camera", 'c', 0, G_OPTION_ARG_FILENAME, &raw.camera,
         "Show a camera, without knowing where it is: its name or a part of it, a generated picture, or a "
         "video again and again",
         "NAME|test|file:VIDEO"},
        {"camera-size", 0, 0, G_OPTION_ARG_STRING, &raw.cameraSize,
         "Size of its pictures, pixels (default: 640x480)", "WxH"},
        {"mirror", 0, 0, G_OPTION_ARG_NONE, &raw.mirrors, "Show the camera as a mirror would", nullptr},
        {"list-cameras", 0, 0, G_OPTION_ARG_NONE, &raw.listsCameras,
         "Print the cameras there are, with their sizes and rates, and end", nullptr},
        {"record", 'r', 0, G_OPTION_ARG_FILENAME, &raw.record,
         "Keep what the session sees in a new recording", "FILE.krs"},
        {"speed", 0, 0, G_OPTION_ARG_STRING, &raw.speed,
         "N times real time, or max: as fast as frames are taken (default: 1)", "N|max"},
        {"step", 0, 0, G_OPTION_ARG_NONE, &raw.steps,
         "Frame by frame: the next when Space or Right is pressed, with --frames when the page has the last",
         nullptr},
        {"loop", 0, 0, G_OPTION_ARG_NONE, &raw.loops, "Play the recording again and again", nullptr},
        {"tolerant", 0, 0, G_OPTION_ARG_NONE, &raw.tolerant, "Play a damaged recording up to the damage",
         nullptr},
        {"size", 0, 0, G_OPTION_ARG_STRING, &raw.size, "Size of the view (default: 960x600)", "WxH"},
        {"orientation", 0, 0, G_OPTION_ARG_STRING, &raw.orientation,
         "portrait, portrait-down, landscape-right or landscape-left (default: from the view's shape)",
         "NAME"},
        {"mounting", 0, 0, G_OPTION_ARG_STRING, &raw.mounting,
         "The camera: turned with the device, or fixed upright (default: upright)", "turned|upright"},
        {"frames", 'n', 0, G_OPTION_ARG_STRING, &raw.frames, "End after N frames and print a summary", "N"},
        {"screenshot", 0, 0, G_OPTION_ARG_FILENAME, &raw.screenshot,
         "At the end write the window as it is seen: camera, page, overlays (after 90 frames without "
         "--frames)",
         "FILE.png"},
        {"log-level", 0, 0, G_OPTION_ARG_STRING, &raw.logLevel,
         "off, info, or debug: with all topics of KESTRIN_DEBUG (default: info)", "LEVEL"},
        {"strict-tls", 0, 0, G_OPTION_ARG_NONE, &raw.strictTls,
         "Refuse servers whose certificates the system does not trust, the one of --page among them",
         nullptr},
        {"host-map", 0, 0, G_OPTION_ARG_STRING_ARRAY, &raw.hostMap,
         "Reach HOST at another address; may be repeated", "HOST=ADDRESS:PORT"},
        {"grant", 0, 0, G_OPTION_ARG_STRING, &raw.grant,
         "Allow camera, photos or both without asking the person", "camera,photos"},
        {"forget-permissions", 0, 0, G_OPTION_ARG_NONE, &raw.forgets,
         "Forget what the person has allowed or refused, and end", nullptr},
        {"version", 0, 0, G_OPTION_ARG_NONE, &raw.version, "Print the version", nullptr},
        {}};
    const std::unique_ptr<GOptionContext, decltype(&g_option_context_free)> context(
        g_option_context_new("- a web page in augmented reality"), g_option_context_free);
    g_option_context_add_main_entries(context.get(), entries, nullptr);
    g_option_context_set_description(
        context.get(), "Keys: F11 full screen, Ctrl+Q quit, with --step Space or Right for the next frame.\n"
                       "Example: kestrin-view --page web/dist/demo\n");
    g_autoptr(GError) error = nullptr;
    if (!g_option_context_parse(context.get(), &argc, &argv, &error))
        return failure(error->message);
    if (raw.version)
        return Ending{0, "kestrin-view " KESTRIN_VERSION};
    if (argc > 1)
        return failure(std::string("unexpected argument '") + argv[1] + "'");
    return checked(raw);
}

} // namespace kestrin::view

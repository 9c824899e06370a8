#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace kestrin::content {

/// Something of an application that can be found by its title: a scene or a page.
struct Entry {
    std::string id;
    std::string title;
    bool operator==(const Entry&) const = default;
};

/// A printed picture that the camera recognises.
struct Trigger {
    /// Clients name files after it: letters, digits, hyphens and underscores.
    std::string id;
    /// The id of the scene that it opens.
    std::string scene;
    /// A file below `Application::folder`.
    std::filesystem::path picture;
    /// As printed, millimetres; 0 when it is not known.
    double width = 0, height = 0;
    bool operator==(const Trigger&) const = default;
};

/// A printed text that the camera recognises.
struct PrintedText {
    std::string id;
    /// The id of the scene that it opens.
    std::string scene;
    std::string text;
    bool operator==(const PrintedText&) const = default;
};

/// What a content server says and serves about one application. A plain value; texts are UTF-8.
struct Application {
    /// A UUID. Left empty, it is derived from the path of `page`: the same page has the same id in every run.
    std::string id;
    std::string title = "Kestrin application";
    /// Words, served in this order, duplicates included.
    std::vector<std::string> featureFlags;
    /// A folder that holds index.html, all of whose files are served; or one HTML file, which alone is
    /// served.
    std::filesystem::path page;
    /// Handed to the page in the base command; none when empty.
    std::string theme;
    std::vector<Entry> scenes, pages;
    std::vector<Trigger> triggers;
    std::vector<PrintedText> texts;
    /// Where the triggers' pictures are.
    std::filesystem::path folder;
    /// The name under which look-ups reach the server through a host map: letters, digits, dots, hyphens.
    std::string hostName = "content.kestrin.test";
    bool operator==(const Application&) const = default;
};

/// A folder whose application.json describes an application; docs/application-folder.md tells its fields.
struct ApplicationFolder {
    std::filesystem::path path;
};

/// Where an application comes from: given once and for all, or described by a folder whose author goes on
/// editing it.
using ApplicationSource = std::variant<Application, ApplicationFolder>;

/// The application with its id filled in and its page made absolute.
/// Throws std::runtime_error, whose text names the field, when one of them cannot be served. Thread: any.
Application checked(Application application);

} // namespace kestrin::content

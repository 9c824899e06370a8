#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kestrin::content {

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
    /// The name under which look-ups reach the server through a host map: letters, digits, dots, hyphens.
    std::string hostName = "content.kestrin.test";
};

/// The application with its id filled in and its page made absolute.
/// Throws std::runtime_error, whose text names the field, when one of them cannot be served. Thread: any.
Application checked(Application application);

} // namespace kestrin::content

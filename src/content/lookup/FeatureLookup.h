#pragma once

#include "content/Application.h"
#include "content/lookup/Features.h"

#include <map>
#include <stop_token>
#include <string>

namespace kestrin::content {

/// Recognises pictures by their features and the one perspective that they have in common. Keeps the features
/// of the triggers' pictures, and makes them anew when a file has changed.
class FeatureLookup {
  public:
    void prepare(const Application& application, const std::stop_token& stop);
    /// The trigger whose picture is seen best, or null. Throws UnreadablePicture.
    const Trigger* find(const Application& application, const std::string& jpeg, const std::stop_token& stop);

  private:
    struct Known {
        std::filesystem::file_time_type changed;
        Features features;
    };

    /// Empty features when the picture cannot be read.
    const Features& featuresIn(const std::filesystem::path& picture);

    std::map<std::filesystem::path, Known> m_known;
};

} // namespace kestrin::content

#pragma once

#include "content/PictureLookup.h"
#include "content/lookup/Features.h"

#include <map>

namespace kestrin::content {

/// Recognises pictures by their features and the one perspective that they have in common. Keeps the features
/// of the triggers' pictures, and makes them anew when a file has changed.
class FeatureLookup : public PictureLookup {
  public:
    void prepare(const Application& application, std::stop_token stop) override;
    const Trigger* findTrigger(const Application& application, const std::string& jpeg) override;

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

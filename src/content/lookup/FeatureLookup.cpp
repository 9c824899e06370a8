#include "content/lookup/FeatureLookup.h"

#include "content/lookup/GrayPicture.h"

namespace kestrin::content {
namespace {

// More of the view than of a picture, which is only a part of it.
constexpr int kPictureSide = 480, kPictureFeatures = 400;
constexpr int kViewSide = 800, kViewFeatures = 1000;

} // namespace

void FeatureLookup::prepare(const Application& application, const std::stop_token& stop) {
    std::map<std::filesystem::path, Known> stillKnown;
    for (const Trigger& trigger : application.triggers)
        if (auto known = m_known.extract(application.folder / trigger.picture))
            stillKnown.insert(std::move(known));
    m_known = std::move(stillKnown);
    for (const Trigger& trigger : application.triggers)
        if (!stop.stop_requested())
            featuresIn(application.folder / trigger.picture);
}

const Trigger* FeatureLookup::find(const Application& application, const std::string& jpeg,
                                   const std::stop_token& stop) {
    const Features seen = featuresOf(decodeGray(jpeg, kViewSide), kViewFeatures);
    const Trigger* best = nullptr;
    int most = 0;
    for (const Trigger& trigger : application.triggers) {
        if (stop.stop_requested())
            break;
        if (const int common = commonFeatures(featuresIn(application.folder / trigger.picture), seen);
            common > most) {
            most = common;
            best = &trigger;
        }
    }
    return best;
}

const Features& FeatureLookup::featuresIn(const std::filesystem::path& picture) {
    std::error_code missing;
    const auto changed = std::filesystem::last_write_time(picture, missing);
    const auto [known, isNew] = m_known.try_emplace(picture, Known{changed, {}});
    if (isNew || known->second.changed != changed) {
        const cv::Mat gray = readGray(picture, kPictureSide);
        known->second = {changed, gray.empty() ? Features{} : featuresOf(gray, kPictureFeatures)};
    }
    return known->second.features;
}

} // namespace kestrin::content

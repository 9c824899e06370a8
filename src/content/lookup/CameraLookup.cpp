#include "content/lookup/CameraLookup.h"

#include "content/TextMatch.h"
#include "content/lookup/GrayPicture.h"

namespace kestrin::content {

void CameraLookup::prepare(const Application& application, std::stop_token stop) {
    m_features.prepare(application, stop);
    if (!application.texts.empty() && !stop.stop_requested())
        m_reader.prepare();
}

const Trigger* CameraLookup::findTrigger(const Application& application, const std::string& jpeg,
                                         std::stop_token stop) {
    return m_features.find(application, jpeg, stop);
}

const PrintedText* CameraLookup::findText(const Application& application, const std::string& jpeg,
                                          std::stop_token stop) {
    const cv::Mat picture = decodeGray(jpeg, TextReader::kLongest);
    return application.texts.empty() ? nullptr : nearestText(application.texts, m_reader.read(picture, stop));
}

} // namespace kestrin::content

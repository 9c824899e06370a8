#pragma once

#include "content/PictureLookup.h"
#include "content/lookup/FeatureLookup.h"
#include "content/lookup/TextReader.h"

namespace kestrin::content {

/// Recognises triggers by their features, and reads texts.
class CameraLookup : public PictureLookup {
  public:
    void prepare(const Application& application, std::stop_token stop) override;
    const Trigger* findTrigger(const Application& application, const std::string& jpeg,
                               std::stop_token stop) override;
    const PrintedText* findText(const Application& application, const std::string& jpeg,
                                std::stop_token stop) override;

  private:
    FeatureLookup m_features;
    TextReader m_reader;
};

} // namespace kestrin::content

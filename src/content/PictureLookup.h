#pragma once

#include "content/Application.h"

#include <stdexcept>
#include <stop_token>
#include <string>

namespace kestrin::content {

/// A client's picture that cannot be read; the text is for the client.
struct UnreadablePicture : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Recognises what a client's picture, a JPEG, shows. Breaks off soon when it is stopped. One thread at a
/// time.
class PictureLookup {
  public:
    virtual ~PictureLookup() = default;

    /// Gets ready for what an application has to be recognised, so that the first look-up does not have to.
    virtual void prepare(const Application& application, std::stop_token stop) = 0;
    /// The trigger whose picture is seen best; null when none is. Throws UnreadablePicture.
    virtual const Trigger* findTrigger(const Application& application, const std::string& jpeg,
                                       std::stop_token stop) = 0;
    /// The text that is read best; null when none is. Throws UnreadablePicture; another std::runtime_error
    /// when texts cannot be read here.
    virtual const PrintedText* findText(const Application& application, const std::string& jpeg,
                                        std::stop_token stop) = 0;
};

} // namespace kestrin::content

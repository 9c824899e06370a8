#pragma once

#include "content/Application.h"

#include <stop_token>
#include <string>

namespace kestrin::content {

/// Recognises what a client's picture shows. One thread at a time.
class PictureLookup {
  public:
    virtual ~PictureLookup() = default;

    /// Gets ready for an application's triggers, so that the first look-up does not have to. Breaks
    /// off soon when it is stopped.
    virtual void prepare(const Application& application, std::stop_token stop) = 0;
    /// The trigger whose picture is seen best; null when none is. Throws std::runtime_error, whose text is
    /// for the client, when the JPEG cannot be read.
    virtual const Trigger* findTrigger(const Application& application, const std::string& jpeg) = 0;
};

} // namespace kestrin::content

#pragma once

#include "content/PictureLookup.h"
#include "content/WorkQueue.h"

#include <libsoup/soup.h>
#include <memory>

namespace kestrin::content {

/// What a client looks for in its picture.
enum class Sought { Trigger, Text };

/// Answers the requests that ask what a picture shows, off the server's thread, on which its operations are
/// called.
class Lookups {
  public:
    /// `context` is the server's.
    Lookups(std::shared_ptr<PictureLookup> lookup, GMainContext* context)
        : m_lookup(std::move(lookup)), m_queue(context) {}

    void prepare(std::shared_ptr<const Application> application);
    /// Answers {"id":…,"type":"trigger" or "text","scene_id":…}, or an error record. The request's body is a
    /// JSON object with the picture, a base64 JPEG, as "file", and may name the application by its
    /// "application_id".
    void find(Sought sought, SoupServerMessage* message, std::shared_ptr<const Application> application);

  private:
    const std::shared_ptr<PictureLookup> m_lookup;
    WorkQueue m_queue;
};

} // namespace kestrin::content

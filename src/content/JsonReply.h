#pragma once

#include <libsoup/soup.h>
#include <string>

namespace kestrin::content {

/// Answers a request with JSON text. A HEAD request gets the headers of it.
void replyWithJson(SoupServerMessage* message, unsigned status, const std::string& body);

/// Answers with a status from 400 up and an error record.
void replyWithError(SoupServerMessage* message, unsigned status, const std::string& detail);

} // namespace kestrin::content

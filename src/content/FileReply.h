#pragma once

#include "content/OpenFile.h"

#include <functional>
#include <libsoup/soup.h>

namespace kestrin::content {

/// Breaks a connection off, when an answer that was begun cannot be completed.
using BreakOff = std::function<void()>;

/// Answers a GET or HEAD with a file, or with the one range of it that was asked for. The file is read while
/// it is sent, a piece at a time, so that its size does not matter; one that shrinks in the meantime cuts the
/// answer short, which the client notices by its length. Several ranges in one request get the whole file.
void replyWithFile(SoupServerMessage* message, OpenFile file, BreakOff breakOff);

} // namespace kestrin::content

#pragma once

#include "content/Application.h"
#include "content/FileReply.h"
#include "content/TemplateFiles.h"

#include <libsoup/soup.h>
#include <string>
#include <vector>

namespace kestrin::content {

/// Answers the requests of one application's clients. Never changes after its construction.
class RequestHandler {
  public:
    /// `application` is checked; `keyString` is what a client is told that asks for the application's key.
    RequestHandler(Application application, TemplateFiles files, std::string keyString);

    /// Answers any request. The server passes paths on as they came, escapes included.
    void answer(SoupServerMessage* message, BreakOff breakOff) const;

  private:
    using Segments = std::vector<std::string>;

    void answerApplication(SoupServerMessage* message, const Segments& path) const;
    void answerTemplate(SoupServerMessage* message, const Segments& path, BreakOff breakOff) const;

    Application m_application;
    TemplateFiles m_files;
    std::string m_keyString;
};

} // namespace kestrin::content

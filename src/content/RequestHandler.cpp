#include "content/RequestHandler.h"

#include "content/GPointer.h"
#include "content/JsonReply.h"
#include "content/Records.h"

#include <cstring>
#include <optional>
#include <utility>

namespace kestrin::content {
namespace {

const char* pathOf(SoupServerMessage* message) {
    return g_uri_get_path(soup_server_message_get_uri(message));
}

// Split first and decoded after, so that an escaped slash never separates. None when an escape is broken or
// stands for a NUL.
std::optional<std::vector<std::string>> segmentsOf(const char* path) {
    std::vector<std::string> segments;
    for (const char* begin = *path == '/' ? path + 1 : path;;) {
        const char* const end = begin + std::strcspn(begin, "/");
        const GText segment(g_uri_unescape_segment(begin, end, nullptr));
        if (!segment)
            return std::nullopt;
        segments.emplace_back(segment.get());
        if (*end == '\0')
            return segments;
        begin = end + 1;
    }
}

bool startsWith(const std::vector<std::string>& path, std::initializer_list<const char*> beginning) {
    return path.size() >= beginning.size() && std::equal(beginning.begin(), beginning.end(), path.begin());
}

} // namespace

RequestHandler::RequestHandler(Application application, TemplateFiles files, std::string keyString)
    : m_application(std::move(application)), m_files(std::move(files)), m_keyString(std::move(keyString)) {}

void RequestHandler::answer(SoupServerMessage* message, BreakOff breakOff) const {
    const char* const method = soup_server_message_get_method(message);
    if (method != SOUP_METHOD_GET && method != SOUP_METHOD_HEAD) {
        soup_message_headers_replace(soup_server_message_get_response_headers(message), "Allow", "GET, HEAD");
        replyWithError(message, SOUP_STATUS_METHOD_NOT_ALLOWED,
                       std::string(method) + " is not answered here");
        return;
    }
    const auto path = segmentsOf(pathOf(message));
    if (path && startsWith(*path, {"template"}))
        answerTemplate(message, *path, std::move(breakOff));
    else if (path && startsWith(*path, {"api", "v2", "application"}))
        answerApplication(message, *path);
    else
        replyWithError(message, SOUP_STATUS_NOT_FOUND,
                       std::string("nothing is served at ") + pathOf(message));
}

void RequestHandler::answerApplication(SoupServerMessage* message, const Segments& path) const {
    const Segments rest(path.begin() + 3, path.end());
    if (rest == Segments{m_application.id})
        replyWithJson(message, SOUP_STATUS_OK, applicationRecord(m_application));
    else if (rest == Segments{m_application.id, "appkey"})
        replyWithJson(message, SOUP_STATUS_OK, applicationKeyRecord(m_keyString));
    else
        replyWithError(message, SOUP_STATUS_NOT_FOUND, std::string("no such record: ") + pathOf(message));
}

void RequestHandler::answerTemplate(SoupServerMessage* message, const Segments& path,
                                    BreakOff breakOff) const {
    if (auto file = m_files.open(Segments(path.begin() + 1, path.end())))
        replyWithFile(message, std::move(*file), std::move(breakOff));
    else
        replyWithError(message, SOUP_STATUS_NOT_FOUND, std::string("no such file: ") + pathOf(message));
}

} // namespace kestrin::content

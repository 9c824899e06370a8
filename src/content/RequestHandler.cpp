#include "content/RequestHandler.h"

#include "content/GPointer.h"
#include "content/JsonReply.h"
#include "content/Records.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
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

// The value of "filter[title]"; none when the query has none.
std::optional<std::string> titleFilter(SoupServerMessage* message) {
    const char* const query = g_uri_get_query(soup_server_message_get_uri(message));
    const GHandle<GHashTable, g_hash_table_unref> parameters(
        query ? g_uri_parse_params(query, -1, "&", G_URI_PARAMS_NONE, nullptr) : nullptr);
    const void* const title = parameters ? g_hash_table_lookup(parameters.get(), "filter[title]") : nullptr;
    return title ? std::optional<std::string>(static_cast<const char*>(title)) : std::nullopt;
}

struct LookupAddress {
    std::string_view path;
    Sought sought;
};

constexpr LookupAddress kLookups[]{{"/api/v2/triggersnap/find", Sought::Trigger},
                                   {"/api/v2/triggertext/find", Sought::Text}};

} // namespace

RequestHandler::RequestHandler(Application application, std::string endpoint, Lookups* lookups)
    : m_application(std::make_shared<Application>(std::move(application))), m_endpoint(std::move(endpoint)),
      m_files(m_application->page), m_lookups(lookups) {
    if (m_lookups)
        m_lookups->prepare(m_application);
}

std::string RequestHandler::host(Form form) const {
    return form == Form::Direct ? m_endpoint.substr(0, m_endpoint.rfind(':')) : m_application->hostName;
}

std::string RequestHandler::templateUrl(Form form) const {
    const GText page(g_uri_escape_string(m_files.index().c_str(), nullptr, FALSE));
    return "https://" + (form == Form::Direct ? m_endpoint : host(form)) + "/template/" + page.get();
}

std::optional<Sought> RequestHandler::lookUpIn(SoupServerMessage* message) const {
    const auto* const asked =
        std::find_if(std::begin(kLookups), std::end(kLookups),
                     [&](const LookupAddress& entry) { return entry.path == pathOf(message); });
    const bool isPost = soup_server_message_get_method(message) == SOUP_METHOD_POST;
    return m_lookups && isPost && asked != std::end(kLookups) ? std::optional(asked->sought) : std::nullopt;
}

bool RequestHandler::readsBody(SoupServerMessage* message) const { return lookUpIn(message).has_value(); }

void RequestHandler::answer(SoupServerMessage* message, BreakOff breakOff) const {
    if (const auto sought = lookUpIn(message)) {
        m_lookups->find(*sought, message, m_application);
        return;
    }
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
    else if (path && startsWith(*path, {"picture"}))
        answerPicture(message, *path, std::move(breakOff));
    else if (path && startsWith(*path, {"api", "v2", "application"}))
        answerApplication(message, *path);
    else
        replyWithError(message, SOUP_STATUS_NOT_FOUND,
                       std::string("nothing is served at ") + pathOf(message));
}

void RequestHandler::answerApplication(SoupServerMessage* message, const Segments& path) const {
    const Segments rest(path.begin() + 3, path.end());
    const auto isAsked = [&](const char* what) { return rest == Segments{m_application->id, what}; };
    std::string body;
    if (rest == Segments{m_application->id})
        body = applicationRecord(*m_application);
    else if (isAsked("appkey"))
        body = applicationKeyRecord(keyString(*m_application, templateUrl(Form::Direct)));
    else if (isAsked("triggerbundleios"))
        body = triggerBundle(*m_application, originFor(message) + "/picture/");
    else if (isAsked("scene"))
        body = entryRecords(m_application->scenes, "scene", titleFilter(message));
    else if (isAsked("page"))
        body = entryRecords(m_application->pages, "page", titleFilter(message));
    if (body.empty())
        replyWithError(message, SOUP_STATUS_NOT_FOUND, std::string("no such record: ") + pathOf(message));
    else
        replyWithJson(message, SOUP_STATUS_OK, body);
}

// By the name that the client itself used: it may reach the server only by that one, through a host map.
std::string RequestHandler::originFor(SoupServerMessage* message) const {
    const char* const host =
        soup_message_headers_get_one(soup_server_message_get_request_headers(message), "Host");
    const bool isUsable = host && *host && std::all_of(host, host + std::strlen(host), [](char c) {
                              return g_ascii_isalnum(c) || std::strchr(".-:[]", c);
                          });
    return "https://" + (isUsable ? host : m_endpoint);
}

void RequestHandler::answerTemplate(SoupServerMessage* message, const Segments& path,
                                    BreakOff breakOff) const {
    if (auto file = m_files.open(Segments(path.begin() + 1, path.end())))
        replyWithFile(message, std::move(*file), std::move(breakOff));
    else
        replyWithError(message, SOUP_STATUS_NOT_FOUND, std::string("no such file: ") + pathOf(message));
}

// Of the folder's files only those that a trigger names: the others are the author's own business.
void RequestHandler::answerPicture(SoupServerMessage* message, const Segments& path,
                                   BreakOff breakOff) const {
    std::filesystem::path asked;
    for (auto segment = path.begin() + 1; segment != path.end(); ++segment)
        asked /= *segment;
    const auto& triggers = m_application->triggers;
    const bool isKnown = std::any_of(triggers.begin(), triggers.end(),
                                     [&](const Trigger& trigger) { return trigger.picture == asked; });
    const std::filesystem::path& folder = m_application->folder;
    const auto isInside = [&](const std::filesystem::path& real) { return liesBelow(folder, real); };
    auto file = isKnown ? openFile(folder / asked, isInside) : std::nullopt;
    if (file)
        replyWithFile(message, std::move(*file), std::move(breakOff));
    else
        replyWithError(message, SOUP_STATUS_NOT_FOUND, std::string("no such picture: ") + pathOf(message));
}

} // namespace kestrin::content

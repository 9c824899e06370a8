#include "content/Lookups.h"

#include "content/JsonReply.h"
#include "content/Records.h"

#include <boost/json.hpp>

#include <optional>
#include <stdexcept>
#include <utility>

namespace kestrin::content {
namespace {

namespace json = boost::json;

struct Question {
    std::string picture, applicationId;
};

std::string memberText(const json::object& body, const char* name) {
    const json::value* const value = body.if_contains(name);
    return value && value->is_string() ? std::string(value->get_string()) : "";
}

std::string decoded(const std::string& base64) {
    gsize size = 0;
    const GHandle<guchar, g_free> bytes(g_base64_decode(base64.c_str(), &size));
    return {reinterpret_cast<const char*>(bytes.get()), size};
}

Question questionIn(SoupServerMessage* message) {
    const GHandle<GBytes, g_bytes_unref> bytes(
        soup_message_body_flatten(soup_server_message_get_request_body(message)));
    gsize size = 0;
    const auto* const data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
    json::error_code wrong;
    const json::value body = json::parse(json::string_view(data ? data : "", size), wrong);
    if (wrong || !body.is_object())
        throw std::runtime_error("the body is not a JSON object");
    Question question{decoded(memberText(body.get_object(), "file")),
                      memberText(body.get_object(), "application_id")};
    if (question.picture.empty())
        throw std::runtime_error("the body has no picture as \"file\"");
    return question;
}

/// A request that waits for its answer. All but `status` and `body` belongs to the server's thread.
struct Pending {
    GPointer<SoupServerMessage> message;
    bool isOver = false; // the client has left
    unsigned status = SOUP_STATUS_OK;
    std::string body;

    void fail(unsigned failure, const std::string& why) {
        status = failure;
        body = errorRecord(failure, why);
    }
};

/// Holds the answer back until it is resumed.
std::shared_ptr<Pending> suspend(SoupServerMessage* message) {
    const auto pending = std::make_shared<Pending>();
    pending->message = GPointer<SoupServerMessage>::share(message);
    for (const char* const end : {"finished", "disconnected"})
        g_signal_connect_data(
            message, end, G_CALLBACK(+[](SoupServerMessage*, gpointer data) {
                if (const auto waiting = static_cast<std::weak_ptr<Pending>*>(data)->lock())
                    waiting->isOver = true;
            }),
            new std::weak_ptr<Pending>(pending),
            +[](gpointer data, GClosure*) { delete static_cast<std::weak_ptr<Pending>*>(data); },
            G_CONNECT_DEFAULT);
    soup_server_message_pause(message);
    return pending;
}

void resume(const Pending& pending) {
    if (pending.isOver)
        return;
    replyWithJson(pending.message.get(), pending.status, pending.body);
    soup_server_message_unpause(pending.message.get());
}

template <class Found>
std::optional<std::string> recordOf(const Found* found, const char* type) {
    if (!found)
        return std::nullopt;
    return json::serialize(json::object{{"id", found->id}, {"type", type}, {"scene_id", found->scene}});
}

void look(PictureLookup& lookup, Sought sought, const Application& application, const std::string& picture,
          const std::stop_token& stop, Pending& pending) {
    try {
        const bool isText = sought == Sought::Text;
        if (auto record = isText ? recordOf(lookup.findText(application, picture, stop), "text")
                                 : recordOf(lookup.findTrigger(application, picture, stop), "trigger"))
            pending.body = std::move(*record);
        else
            pending.fail(SOUP_STATUS_NOT_FOUND, isText ? "the picture shows no text of the application"
                                                       : "the picture shows no trigger");
    } catch (const UnreadablePicture& wrong) {
        pending.fail(SOUP_STATUS_BAD_REQUEST, wrong.what());
    } catch (const std::exception& failure) {
        pending.fail(SOUP_STATUS_INTERNAL_SERVER_ERROR, failure.what());
    }
}

} // namespace

void Lookups::prepare(std::shared_ptr<const Application> application) {
    m_queue.post(
        [lookup = m_lookup, application = std::move(application)](std::stop_token stop) {
            try {
                lookup->prepare(*application, std::move(stop));
            } catch (const std::exception&) { // which the look-ups meet, and answer, too
            }
        },
        nullptr);
}

void Lookups::find(Sought sought, SoupServerMessage* message,
                   std::shared_ptr<const Application> application) {
    Question question;
    try {
        question = questionIn(message);
    } catch (const std::exception& wrong) {
        replyWithError(message, SOUP_STATUS_BAD_REQUEST, wrong.what());
        return;
    }
    if (!question.applicationId.empty() && question.applicationId != application->id) {
        replyWithError(message, SOUP_STATUS_NOT_FOUND, "no such application: " + question.applicationId);
        return;
    }
    const auto pending = suspend(message);
    const auto work = [pending, sought, lookup = m_lookup, application,
                       picture = std::move(question.picture)](const std::stop_token& stop) {
        look(*lookup, sought, *application, picture, stop, *pending);
    };
    if (m_queue.post(work, [pending] { resume(*pending); }))
        return;
    pending->fail(SOUP_STATUS_SERVICE_UNAVAILABLE, "too many pictures wait to be looked at");
    resume(*pending);
}

} // namespace kestrin::content

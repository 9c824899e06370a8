#include "content/JsonReply.h"

#include "content/Records.h"

namespace kestrin::content {

void replyWithJson(SoupServerMessage* message, unsigned status, const std::string& body) {
    soup_message_headers_replace(soup_server_message_get_response_headers(message), "Cache-Control",
                                 "no-cache");
    soup_server_message_set_status(message, status, nullptr);
    soup_server_message_set_response(message, "application/json", SOUP_MEMORY_COPY, body.data(), body.size());
}

void replyWithError(SoupServerMessage* message, unsigned status, const std::string& detail) {
    replyWithJson(message, status, errorRecord(status, detail));
}

} // namespace kestrin::content

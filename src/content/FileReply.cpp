#include "content/FileReply.h"

#include "content/GPointer.h"
#include "content/JsonReply.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace kestrin::content {
namespace {

constexpr goffset kPiece = 64 * 1024;

struct Transfer {
    FileDescriptor file;
    goffset at, end;
    BreakOff breakOff;
};

void appendPiece(SoupServerMessage* message, Transfer& transfer) {
    const auto wanted = static_cast<std::size_t>(std::min(kPiece, transfer.end - transfer.at));
    if (wanted == 0)
        return;
    auto* const piece = static_cast<char*>(g_malloc(wanted));
    const ssize_t got = pread(transfer.file.number(), piece, wanted, transfer.at);
    if (got != static_cast<ssize_t>(wanted)) {
        // The promised length cannot be kept. The piece still goes on its way, for libsoup to notice on it
        // that the connection is gone, but never arrives.
        transfer.breakOff();
        std::memset(piece, 0, wanted);
    }
    transfer.at += static_cast<goffset>(wanted);
    const GHandle<GBytes, g_bytes_unref> bytes(g_bytes_new_take(piece, wanted));
    soup_message_body_append_bytes(soup_server_message_get_response_body(message), bytes.get());
}

void pieceWritten(SoupServerMessage* message, Transfer* transfer) {
    appendPiece(message, *transfer);
    // To the end of the queue, so that a long file does not keep other clients waiting.
    soup_server_message_pause(message);
    soup_server_message_unpause(message);
}

void send(SoupServerMessage* message, std::unique_ptr<Transfer> transfer) {
    soup_message_headers_set_content_length(soup_server_message_get_response_headers(message),
                                            transfer->end - transfer->at);
    if (soup_server_message_get_method(message) == SOUP_METHOD_HEAD)
        return;
    soup_message_body_set_accumulate(soup_server_message_get_response_body(message), FALSE);
    appendPiece(message, *transfer);
    g_signal_connect_data(
        message, "wrote-chunk", G_CALLBACK(pieceWritten), transfer.release(),
        +[](gpointer done, GClosure*) { delete static_cast<Transfer*>(done); }, G_CONNECT_DEFAULT);
}

/// The one range that a request asks for, as it stands; none when the whole file is to be sent.
std::optional<SoupRange> rangeOf(SoupServerMessage* message, goffset size) {
    SoupMessageHeaders* const request = soup_server_message_get_request_headers(message);
    // An If-Range cannot match: answers carry no validator.
    if (soup_server_message_get_method(message) != SOUP_METHOD_GET ||
        soup_message_headers_get_one(request, "If-Range"))
        return std::nullopt;
    SoupRange* ranges = nullptr;
    int count = 0;
    if (!soup_message_headers_get_ranges(request, size, &ranges, &count))
        return std::nullopt;
    const SoupRange first = ranges[0];
    soup_message_headers_free_ranges(request, ranges);
    return count == 1 ? std::optional(first) : std::nullopt;
}

} // namespace

void replyWithFile(SoupServerMessage* message, OpenFile file, BreakOff breakOff) {
    SoupMessageHeaders* const headers = soup_server_message_get_response_headers(message);
    const auto size = static_cast<goffset>(file.size);
    goffset first = 0, end = size;
    unsigned status = SOUP_STATUS_OK;
    if (const auto range = rangeOf(message, size)) {
        first = std::max<goffset>(range->start, 0); // more than the whole from its end is the whole
        end = std::min(range->end, size - 1) + 1;
        if (first >= end) {
            soup_message_headers_replace(headers, "Content-Range",
                                         ("bytes */" + std::to_string(size)).c_str());
            replyWithError(message, SOUP_STATUS_REQUESTED_RANGE_NOT_SATISFIABLE,
                           "the file has " + std::to_string(size) + " bytes");
            return;
        }
        soup_message_headers_set_content_range(headers, first, end - 1, size);
        status = SOUP_STATUS_PARTIAL_CONTENT;
    }
    soup_server_message_set_status(message, status, nullptr);
    soup_message_headers_replace(headers, "Accept-Ranges", "bytes");
    // Authors edit their files while they are served.
    soup_message_headers_replace(headers, "Cache-Control", "no-cache");
    soup_message_headers_replace(headers, "Content-Type", file.mediaType.c_str());
    send(message,
         std::make_unique<Transfer>(Transfer{std::move(file.descriptor), first, end, std::move(breakOff)}));
}

} // namespace kestrin::content

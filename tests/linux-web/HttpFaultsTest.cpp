#include "HttpFixture.h"

namespace kestrin::test {
namespace {

using Piece = FaultyServer::Piece;
using Reply = FaultyServer::Reply;
constexpr auto kClose = Reply::Then::close;
constexpr auto kHang = Reply::Then::hang;
const std::string kOk = "HTTP/1.1 200 OK\r\n";
const std::string kChunked = "Transfer-Encoding: chunked\r\n\r\n";

class HttpFaults : public HttpFixture {
  protected:
    Answer fetchPath(const std::string& path, unsigned idleTimeout = 1) {
        gtk::SoupHttpClient client(dispatch, options("", idleTimeout));
        return fetch(client, get(server.url(path)), &accepts);
    }
};

std::string compressed(const std::string& data) {
    const auto converter =
        gtk::GRef<GConverter>::adopt(G_CONVERTER(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 1)));
    const auto memory = gtk::GRef<GOutputStream>::adopt(g_memory_output_stream_new_resizable());
    const auto stream =
        gtk::GRef<GOutputStream>::adopt(g_converter_output_stream_new(memory.get(), converter.get()));
    g_output_stream_write_all(stream.get(), data.data(), data.size(), nullptr, nullptr, nullptr);
    g_output_stream_close(stream.get(), nullptr, nullptr);
    auto* result = G_MEMORY_OUTPUT_STREAM(memory.get());
    return {static_cast<const char*>(g_memory_output_stream_get_data(result)),
            g_memory_output_stream_get_data_size(result)};
}

TEST_F(HttpFaults, AnswersOfEveryShape) {
    struct Case {
        std::string name;
        Reply reply;
        int status; ///< 0: no answer
        std::string body = {};
    };
    const std::string half(500, 'x');
    const std::vector<Case> cases{
        {"empty", FaultyServer::reply(""), 200, ""},
        {"error page", FaultyServer::reply("<h1>no</h1>", "404 Not Found"), 404, "<h1>no</h1>"},
        {"server error", FaultyServer::reply("{}", "500 Oops"), 500, "{}"},
        {"no content", {{{"HTTP/1.1 204 No Content\r\n\r\n"}}}, 204, ""},
        {"body until the end", {{{kOk + "\r\nuntil"}, {" the end", 0.1}}, kClose}, 200, "until the end"},
        {"bytes of all kinds", FaultyServer::reply({"a\0b\xff\r\n", 6}), 200, {"a\0b\xff\r\n", 6}},
        {"cut off", {{{kOk + "Content-Length: 1000\r\n\r\n" + half}}, kClose}, 0},
        {"cut off in a chunk", {{{kOk + kChunked + "3e8\r\n" + half}}, kClose}, 0},
        {"cut off in the headers", {{{kOk + "Content-Le"}}, kClose}, 0},
        {"nothing", {{}, kClose}, 0},
        {"not HTTP", {{{"SSH-2.0-OpenSSH_9.2\r\n\r\n"}}, kClose}, 0},
        {"redirect without target", FaultyServer::reply("where", "302 Found"), 302, "where"},
        {"redirect to a file", FaultyServer::reply("", "302 Found", "Location: file:///etc/passwd\r\n"), 0},
        {"redirect to nonsense", FaultyServer::reply("", "302 Found", "Location: https://\r\n"), 0},
    };
    gtk::SoupHttpClient client(dispatch, options());
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        server.serve("/case", each.reply);
        for (const Answer& answer : {fetch(client, get(server.url("/case")), &accepts),
                                     send(client, get(server.url("/case")), &accepts)}) {
            EXPECT_EQ(answer ? answer->status : 0, each.status);
            EXPECT_EQ(answer ? answer->body : "", each.body);
        }
    }
}

TEST_F(HttpFaults, OnlySilenceTimesOut) {
    server.serve("/mute", Reply{{}, kHang});
    server.serve("/stalls", Reply{{{kOk + "Content-Length: 10\r\n\r\n12345"}}, kHang});
    // Longer than the timeout altogether, never silent for as long.
    server.serve("/trickles", Reply{{{kOk + "Content-Length: 6\r\n\r\n"}, {"x", 0.4, 6}}});
    EXPECT_FALSE(fetchPath("/mute"));
    EXPECT_FALSE(fetchPath("/stalls"));
    const Answer trickled = fetchPath("/trickles");
    EXPECT_EQ(trickled ? trickled->body : "", "xxxxxx");
}

TEST_F(HttpFaults, BodiesAreBounded) {
    const std::string block(1 << 20, 'x'), zeros(gtk::kLargestBody + 1, '\0');
    const auto length = [](std::size_t size) {
        return kOk + "Content-Length: " + std::to_string(size) + "\r\n\r\n";
    };
    const int blocks = gtk::kLargestBody / block.size();
    server.serve("/largest", Reply{{{length(gtk::kLargestBody)}, {block, 0, blocks}}});
    const Answer largest = fetchPath("/largest", 10);
    EXPECT_EQ(largest ? largest->body.size() : 0, gtk::kLargestBody);

    server.serve("/bomb", FaultyServer::reply(compressed(zeros), "200 OK", "Content-Encoding: gzip\r\n"));
    EXPECT_FALSE(fetchPath("/bomb", 10));

    // What is declared too large is not read at all, what turns out too large no further.
    std::size_t before = server.bytesWritten();
    server.serve("/declared", Reply{{{length(gtk::kLargestBody + 1)}, {block, 0, blocks + 1}}});
    EXPECT_FALSE(fetchPath("/declared", 10));
    EXPECT_LT(server.bytesWritten() - before, 16 * block.size());

    before = server.bytesWritten();
    server.serve("/endless", Reply{{{kOk + "\r\n"}, {block, 0, 1000}}});
    EXPECT_FALSE(fetchPath("/endless", 10));
    EXPECT_LT(server.bytesWritten() - before, gtk::kLargestBody + 16 * block.size());
}

TEST_F(HttpFaults, RedirectsAreFollowedAndEnd) {
    const auto redirect = [](const std::string& location, const std::string& status = "302 Found") {
        return FaultyServer::reply("moved", status, "Location: " + location + "\r\n");
    };
    server.serve("/loop", redirect("/loop"));
    EXPECT_FALSE(fetchPath("/loop"));
    EXPECT_EQ(server.requests("/loop"), 21);

    FaultyServer other(FaultyServer::Scheme::http);
    other.serve("/end?q=1", "the end");
    server.serve("/first", redirect("sub/../second#part", "301 Moved Permanently"));
    server.serve("/second", redirect(other.url("/end?q=1"), "308 Permanent Redirect"));
    const Answer answer = fetchPath("/first");
    EXPECT_EQ(answer ? answer->body : "", "the end");
}

TEST_F(HttpFaults, RedirectsOfPosts) {
    server.serve("/echo", [](const FaultyServer::Request& request) {
        const auto type = request.headers.find("content-type");
        return FaultyServer::reply(request.method + " " + request.body + " " +
                                   (type == request.headers.end() ? "-" : type->second));
    });
    gtk::SoupHttpClient client(dispatch, options());
    for (const auto& [status, expected] : {std::pair{"302 Found", "GET  -"},
                                           {"303 See Other", "GET  -"},
                                           {"307 Temporary Redirect", "POST {} application/json"}}) {
        server.serve("/post", FaultyServer::reply("", status, "Location: /echo\r\n"));
        const Answer answer = send(client,
                                   {.url = server.url("/post"),
                                    .method = "POST",
                                    .headers = {{"Content-Type", "application/json"}},
                                    .body = "{}"},
                                   &accepts);
        EXPECT_EQ(answer ? answer->body : "", expected) << status;
    }
}

} // namespace
} // namespace kestrin::test

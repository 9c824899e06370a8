#include "Fixture.h"

#include <boost/json.hpp>

namespace kestrin::content {
namespace {

TEST_F(ServerTest, ServesTheFilesOfAFolder) {
    std::string big(5 * 1024 * 1024 + 7, '\0'); // many pieces, and part of one
    for (std::uint32_t i = 0, state = 1; i < big.size(); ++i)
        big[i] = static_cast<char>((state = state * 1664525u + 1013904223u) >> 24);
    folder.write("site/big.bin", big);
    folder.write("site/sub/index.html", "sub");
    folder.write("site/sub/module.mjs", "export {}");
    folder.write("site/a b \u00fc#?%41.txt", "odd");
    start();
    const char *const kHtml = "text/html; charset=utf-8", *const kBytes = "application/octet-stream";
    struct {
        const char *path, *type;
        std::string body;
    } const cases[] = {
        {"", kHtml, kPage},
        {"index.html?v=1&x=../..", kHtml, kPage},
        {"big.bin", kBytes, big},
        {"sub/", kHtml, "sub"},
        {"sub/module.mjs", "text/javascript; charset=utf-8", "export {}"},
        {"a%20b%20%C3%BC%23%3F%2541.txt", "text/plain; charset=utf-8", "odd"},
    };
    for (const auto& [path, type, body] : cases)
        for (const char* const method : {"GET", "HEAD"}) {
            SCOPED_TRACE(path);
            const Answer answer =
                client.request(method, urlOf(server->port(), std::string("/template/") + path));
            EXPECT_EQ(answer.status, 200u);
            EXPECT_TRUE(answer.body == (*method == 'G' ? body : "")) << answer.body.size() << " bytes";
            EXPECT_EQ(answer.headers.at("Content-Type"), type);
            EXPECT_EQ(answer.headers.at("Content-Length"), std::to_string(body.size()));
            EXPECT_EQ(answer.headers.at("Cache-Control"), "no-cache");
        }
    for (const char* const nothing : {"sub", "sub//module.mjs"})
        EXPECT_EQ(get(std::string("/template/") + nothing).status, 404u) << nothing;
}

TEST_F(ServerTest, WhatIsNotThereIsAnErrorRecord) {
    start();
    const std::string record = std::string("/api/v2/application/") + kId;
    const std::string other = "/api/v2/application/00000000-0000-4000-8000-000000000000";
    struct {
        std::string method, path;
        unsigned status = 404;
    } const cases[] = {{"GET", "/"},
                       {"GET", other + "/appkey"},
                       {"GET", "/template/none.js"},
                       {"POST", "/template/index.html", 405},
                       {"OPTIONS", record, 405}};
    for (const auto& [method, path, status] : cases) {
        SCOPED_TRACE(method + " " + path);
        const Answer answer = client.request(method, urlOf(server->port(), path));
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(answer.headers.at("Content-Type"), "application/json");
        EXPECT_EQ(answer.headers.contains("Allow"), status == 405);
        EXPECT_EQ(boost::json::parse(answer.body).at("errors").at(0).at("status"),
                  boost::json::string(std::to_string(status)));
    }
}

} // namespace
} // namespace kestrin::content

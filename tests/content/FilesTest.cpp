#include "Fixture.h"

namespace kestrin::content {
namespace {

TEST_F(ServerTest, ServesTheFilesOfAFolder) {
    std::string big(5 * 1024 * 1024 + 7, '\0'); // many pieces, and part of one
    for (std::uint32_t i = 0, state = 1; i < big.size(); ++i)
        big[i] = static_cast<char>((state = state * 1664525u + 1013904223u) >> 24);
    folder.write("site/big.bin", big);
    folder.write("site/empty.txt", "");
    folder.write("site/sub/index.html", "sub");
    folder.write("site/sub/module.mjs", "export {}");
    folder.write("site/a b \u00fc#?%41.txt", "odd");
    folder.write("site/..dots", "dots");
    start();
    const char *const kHtml = "text/html; charset=utf-8", *const kBytes = "application/octet-stream";
    struct {
        const char *path, *type;
        std::string body;
    } const cases[] = {
        {"", kHtml, kPage},
        {"index.html?v=1&x=../..", kHtml, kPage},
        {"%69ndex.html", kHtml, kPage},
        {"big.bin", kBytes, big},
        {"empty.txt", "text/plain; charset=utf-8", ""},
        {"sub/", kHtml, "sub"},
        {"sub/module.mjs", "text/javascript; charset=utf-8", "export {}"},
        {"a%20b%20%C3%BC%23%3F%2541.txt", "text/plain; charset=utf-8", "odd"},
        {"..dots", kBytes, "dots"},
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
    for (const char* const nothing : {"sub", "sub//module.mjs", "empty/"})
        EXPECT_EQ(get(std::string("/template/") + nothing).status, 404u) << nothing;
}

TEST_F(ServerTest, OneFileIsServedAlone) {
    folder.write("site/my p\u00e4ge.html", "mine");
    std::filesystem::create_symlink("../secret.txt", folder / "site/out.html");
    application.page = folder / "site/my p\u00e4ge.html";
    start();
    EXPECT_EQ(server->templateUrl(Form::Mapped), "https://content.kestrin.test/template/my%20p%C3%A4ge.html");
    EXPECT_EQ(client.get(server->templateUrl(Form::Direct)).body, "mine");
    EXPECT_EQ(get("/template/").body, "mine");
    for (const char* const other : {"index.html", "out.html", "sub/index.html", "my%20p%C3%A4ge.html/x"})
        EXPECT_EQ(get(std::string("/template/") + other).status, 404u) << other;
}

} // namespace
} // namespace kestrin::content

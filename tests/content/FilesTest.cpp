#include "Client.h"
#include "Fixture.h"

namespace kestrin::content {
namespace {

std::string pattern(std::size_t size) {
    std::string bytes(size, '\0');
    unsigned state = 1;
    for (char& byte : bytes)
        byte = static_cast<char>((state = state * 1664525u + 1013904223u) >> 24);
    return bytes;
}

class FilesTest : public ServerTest {
  protected:
    std::string url(const std::string& path) const { return urlOf(server->port(), "/template/" + path); }

    Client client;
};

TEST_F(FilesTest, ServesTheFilesOfAFolder) {
    const std::string big = pattern(5 * 1024 * 1024 + 7); // many pieces, and part of one
    folder.write("site/big.bin", big);
    folder.write("site/empty.txt", "");
    folder.write("site/sub/index.html", "sub");
    folder.write("site/sub/module.mjs", "export {}");
    folder.write("site/a b \u00fc#?%41.txt", "odd");
    folder.write("site/..dots", "dots");
    start();
    struct {
        const char *path, *type;
        std::string body;
    } const cases[] = {
        {"index.html", "text/html; charset=utf-8", kPage},
        {"", "text/html; charset=utf-8", kPage},
        {"index.html?v=1&x=../..", "text/html; charset=utf-8", kPage},
        {"%69ndex.html", "text/html; charset=utf-8", kPage},
        {"big.bin", "application/octet-stream", big},
        {"empty.txt", "text/plain; charset=utf-8", ""},
        {"sub/", "text/html; charset=utf-8", "sub"},
        {"sub/module.mjs", "text/javascript; charset=utf-8", "export {}"},
        {"a%20b%20%C3%BC%23%3F%2541.txt", "text/plain; charset=utf-8", "odd"},
        {"..dots", "application/octet-stream", "dots"},
    };
    for (const auto& [path, type, body] : cases) {
        SCOPED_TRACE(path);
        const Answer answer = client.get(url(path));
        EXPECT_EQ(answer.status, 200u);
        EXPECT_TRUE(answer.body == body) << answer.body.size() << " bytes";
        EXPECT_EQ(answer.headers.at("Content-Type"), type);
        EXPECT_EQ(answer.headers.at("Content-Length"), std::to_string(body.size()));
        EXPECT_EQ(answer.headers.at("Cache-Control"), "no-cache");

        const Answer head = client.request("HEAD", url(path));
        EXPECT_EQ(head.status, 200u);
        EXPECT_EQ(head.body, "");
        EXPECT_EQ(head.headers.at("Content-Length"), std::to_string(body.size()));
        EXPECT_EQ(head.headers.at("Content-Type"), type);
    }
    for (const char* const folderPath : {"sub", "sub//module.mjs", "empty/"})
        EXPECT_EQ(client.get(url(folderPath)).status, 404u) << folderPath;
}

TEST_F(FilesTest, OneFileIsServedAlone) {
    folder.write("site/my p\u00e4ge.html", "mine");
    application.page = folder.path() / "site" / "my p\u00e4ge.html";
    start();
    EXPECT_EQ(server->templateUrl(Form::Mapped), "https://content.kestrin.test/template/my%20p%C3%A4ge.html");
    EXPECT_EQ(client.get(server->templateUrl(Form::Direct)).body, "mine");
    EXPECT_EQ(client.get(url("")).body, "mine");
    EXPECT_EQ(client.get(url("index.html")).status, 404u);
}

} // namespace
} // namespace kestrin::content

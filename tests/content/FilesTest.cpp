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

TEST_F(FilesTest, AnEditedFileIsServedAnew) {
    start();
    EXPECT_EQ(client.get(url("index.html")).body, kPage);
    folder.write("site/index.html", "changed");
    EXPECT_EQ(client.get(url("index.html")).body, "changed");
    std::filesystem::remove(folder.path() / "site/index.html");
    EXPECT_EQ(client.get(url("index.html")).status, 404u);
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

TEST_F(FilesTest, ServesOneRange) {
    const std::string body = pattern(200000);
    folder.write("site/clip.mp4", body);
    folder.write("site/empty.txt", "");
    start();
    struct {
        const char *range, *contentRange;
        std::size_t first, size;
    } const cases[] = {
        {"bytes=0-0", "bytes 0-0/200000", 0, 1},
        {"bytes=0-", "bytes 0-199999/200000", 0, 200000},
        {"bytes=65535-131072", "bytes 65535-131072/200000", 65535, 65538},
        {"bytes=199999-", "bytes 199999-199999/200000", 199999, 1},
        {"bytes=100000-9223372036854775807", "bytes 100000-199999/200000", 100000, 100000},
        {"bytes=-5", "bytes 199995-199999/200000", 199995, 5},
        {"bytes=-900000", "bytes 0-199999/200000", 0, 200000},
    };
    for (const auto& [range, contentRange, first, size] : cases) {
        SCOPED_TRACE(range);
        const Answer answer = client.get(url("clip.mp4"), {{"Range", range}});
        EXPECT_EQ(answer.status, 206u);
        EXPECT_EQ(answer.headers.at("Content-Range"), contentRange);
        EXPECT_TRUE(answer.body == body.substr(first, size)) << answer.body.size() << " bytes";
    }
    for (const char* const whole :
         {"bytes=0-1,5-6", "bytes=5-2", "bytes=x-y", "bytes=", "rows=0-1", "bytes=--5-"}) {
        SCOPED_TRACE(whole);
        const Answer answer = client.get(url("clip.mp4"), {{"Range", whole}});
        EXPECT_EQ(answer.status, 200u);
        EXPECT_TRUE(answer.body == body);
    }
    EXPECT_EQ(client.get(url("clip.mp4"), {{"Range", "bytes=0-1"}, {"If-Range", "\"tag\""}}).status, 200u);
    for (const char* const beyond : {"bytes=200000-", "bytes=200000-200001", "bytes=-0"}) {
        SCOPED_TRACE(beyond);
        const Answer answer = client.get(url("clip.mp4"), {{"Range", beyond}});
        EXPECT_EQ(answer.status, 416u);
        EXPECT_EQ(answer.headers.at("Content-Range"), "bytes */200000");
        EXPECT_NE(answer.body.find("\"status\":\"416\""), std::string::npos);
    }
    EXPECT_EQ(client.get(url("empty.txt"), {{"Range", "bytes=0-"}}).status, 416u);
}

} // namespace
} // namespace kestrin::content

#include "Fixture.h"
#include "RawConnection.h"
#include "content/TemplateFiles.h"

#include <sys/stat.h>

namespace kestrin::content {
namespace {

using namespace std::string_literals;

class TraversalTest : public ServerTest {
  protected:
    /// The path goes out as it stands; no client tidies it up.
    std::string get(const std::string& path) const {
        return exchange(server->port(),
                        "GET " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    }

    void expectRefused(const std::string& path) const {
        SCOPED_TRACE(path);
        const std::string answer = get(path);
        const std::string status =
            answer.substr(0, 13).erase(5, 3); // broken requests are answered as HTTP/1.0
        EXPECT_TRUE(status == "HTTP/ 404 " || status == "HTTP/ 400 ") << answer;
        EXPECT_EQ(answer.find("the secret"), std::string::npos);
        EXPECT_EQ(answer.find("root:"), std::string::npos);
    }
};

TEST_F(TraversalTest, NoPathLeavesTheFolder) {
    folder.write("site/sub/a.txt", "a");
    folder.write("site-secret.txt", "the secret"); // beside the folder, with its name as a beginning
    start();
    const std::string outside = folder.path().string();
    for (const std::string& way : {
             "../secret.txt"s,
             "../../secret.txt"s,
             "sub/../../secret.txt"s,
             "sub/../../site-secret.txt"s,
             "./../secret.txt"s,
             "..%2fsecret.txt"s,
             "..%2Fsecret.txt"s,
             "%2e%2e/secret.txt"s,
             "%2E%2E/secret.txt"s,
             ".%2e/secret.txt"s,
             "%2e%2e%2fsecret.txt"s,
             "%252e%252e/secret.txt"s,
             "%252e%252e%252fsecret.txt"s,
             "%25252e%25252e/secret.txt"s,
             "..%252fsecret.txt"s,
             "..%c0%afsecret.txt"s,
             "%c0%ae%c0%ae/secret.txt"s,
             "%uff0e%uff0e/secret.txt"s,
             "..\\secret.txt"s,
             "..%5csecret.txt"s,
             "....//secret.txt"s,
             "..;/secret.txt"s,
             "../site-secret.txt"s,
             "%2e%2e/site-secret.txt"s,
             "/etc/passwd"s,
             "//etc/passwd"s,
             "%2fetc%2fpasswd"s,
             "%2Fetc/passwd"s,
             outside + "/secret.txt",
             "/" + outside + "/secret.txt",
             "file://" + outside + "/secret.txt",
             "index.html%00"s,
             "index.html%00.txt"s,
             "..%00/secret.txt"s,
             "%00../secret.txt"s,
             "index.html\0.txt"s,
             "../secret.txt\0index.html"s,
             "%"s,
             "%2"s,
             "%zz"s,
             ".."s,
             "../"s,
             "sub/."s,
             "sub/../.."s,
             "%2e%2e"s,
             "sub/%2e%2e/%2e%2e"s,
             std::string(300, 'x'),
             std::string(5000, 'x'),
         })
        expectRefused("/template/" + way);
    expectRefused("/template/sub/%2e%2e/%2e%2e/secret.txt");
    expectRefused("/template%2f..%2fsecret.txt");
    expectRefused("/../secret.txt");
    expectRefused("/api/../template/../secret.txt");
    expectRefused("https://localhost/template/../secret.txt");
    expectRefused("http://localhost/template/index.html");
    std::string deep = "/template/";
    for (int i = 0; i < 3000; ++i)
        deep += "sub/";
    expectRefused(deep + "a.txt");
    EXPECT_TRUE(get("/template/sub/a.txt").starts_with("HTTP/1.1 200 "));
}

TEST_F(TraversalTest, LinksAreFollowedOnlyInside) {
    namespace fs = std::filesystem;
    const fs::path site = folder.path() / "site";
    folder.write("site/sub/a.txt", "inside");
    folder.write("site/sub/index.html", "sub");
    folder.write("elsewhere/index.html", "the secret");
    fs::create_symlink("sub/a.txt", site / "relative.txt");
    fs::create_symlink(site / "sub" / "a.txt", site / "absolute.txt");
    fs::create_directory_symlink("sub", site / "alias");
    fs::create_symlink("../secret.txt", site / "out.txt");
    fs::create_symlink(folder.path() / "secret.txt", site / "out-absolute.txt");
    folder.write("site-secret.txt", "the secret");
    fs::create_symlink("../site-secret.txt", site / "out-beside.txt");
    fs::create_symlink("out.txt", site / "out-twice.txt");
    fs::create_directory_symlink("..", site / "up");
    fs::create_directory_symlink("../elsewhere", site / "away");
    fs::create_directory_symlink("/", site / "root");
    fs::create_symlink("self", site / "self");
    fs::create_symlink("gone", site / "dangling");
    start();
    for (const char* const inside : {"relative.txt", "absolute.txt", "alias/a.txt"})
        EXPECT_TRUE(get(std::string("/template/") + inside).ends_with("\r\n\r\ninside")) << inside;
    EXPECT_TRUE(get("/template/alias/").ends_with("\r\n\r\nsub"));
    for (const char* const out :
         {"out.txt", "out-absolute.txt", "out-beside.txt", "out-twice.txt", "up/secret.txt",
          "up/site/index.html/", "away/", "away/index.html", "root/etc/passwd", "self", "dangling"})
        expectRefused(std::string("/template/") + out);
    EXPECT_TRUE(get("/template/up/site/index.html").starts_with("HTTP/1.1 200 ")); // it comes back in
}

TEST_F(TraversalTest, OnePageServesNoNeighbour) {
    folder.write("site/neighbour.html", "the secret");
    std::filesystem::create_symlink("../secret.txt", folder.path() / "site" / "out.html");
    application.page = folder.path() / "site" / "index.html";
    start();
    for (const char* const other :
         {"neighbour.html", "out.html", "../secret.txt", "sub/index.html", "index.html/x"})
        expectRefused(std::string("/template/") + other);
    EXPECT_TRUE(get("/template/index.html").ends_with(kPage));
}

} // namespace
} // namespace kestrin::content

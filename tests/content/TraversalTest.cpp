#include "Fixture.h"
#include "RawConnection.h"

namespace kestrin::content {
namespace {

using namespace std::string_literals;

class TraversalTest : public ServerTest {
  protected:
    /// The path goes out as it stands; no client tidies it up.
    std::string get(const std::string& path) const {
        RawConnection connection(server->port());
        connection.send("GET " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
        return connection.receiveAll();
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
    for (const std::string& way : {"../secret.txt"s,
                                   "sub/../../site-secret.txt"s,
                                   "./../secret.txt"s,
                                   "..%2fsecret.txt"s,
                                   "%2E%2e/secret.txt"s,
                                   ".%2e/secret.txt"s,
                                   "%252e%252e%252fsecret.txt"s,
                                   "..%c0%afsecret.txt"s,
                                   "%uff0e%uff0e/secret.txt"s,
                                   "..\\secret.txt"s,
                                   "..%5csecret.txt"s,
                                   "....//secret.txt"s,
                                   "..;/secret.txt"s,
                                   "../site-secret.txt"s,
                                   "/etc/passwd"s,
                                   "%2fetc%2fpasswd"s,
                                   outside + "/secret.txt",
                                   "/" + outside + "/secret.txt",
                                   "file://" + outside + "/secret.txt",
                                   "index.html%00.txt"s,
                                   "..%00/secret.txt"s,
                                   "../secret.txt\0index.html"s,
                                   "%"s,
                                   "%zz"s,
                                   ".."s,
                                   "sub/."s,
                                   "sub/../.."s,
                                   "sub/%2e%2e/%2e%2e"s,
                                   std::string(5000, 'x')})
        expectRefused("/template/" + way);
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
    folder.write("site/sub/index.html", "inside");
    folder.write("site-secret.txt", "the secret");
    folder.write("elsewhere/index.html", "the secret");
    const std::string outside = folder.path().string();
    for (const auto& [link, target] : {std::pair{"relative.html", "sub/index.html"s},
                                       {"absolute.html", outside + "/site/sub/index.html"},
                                       {"alias", "sub"},
                                       {"out.txt", "../secret.txt"},
                                       {"out-absolute.txt", outside + "/secret.txt"},
                                       {"out-beside.txt", "../site-secret.txt"},
                                       {"out-twice.txt", "out.txt"},
                                       {"up", ".."},
                                       {"away", "../elsewhere"},
                                       {"root", "/"},
                                       {"self", "self"},
                                       {"dangling", "gone"}})
        std::filesystem::create_symlink(target, folder / "site" / link);
    start();
    for (const char* const inside : {"relative.html", "absolute.html", "alias/", "up/site/sub/index.html"})
        EXPECT_TRUE(get(std::string("/template/") + inside).ends_with("\r\n\r\ninside")) << inside;
    for (const char* const out : {"out.txt", "out-absolute.txt", "out-beside.txt", "out-twice.txt",
                                  "up/secret.txt", "away/", "root/etc/passwd", "self", "dangling"})
        expectRefused(std::string("/template/") + out);
}

} // namespace
} // namespace kestrin::content

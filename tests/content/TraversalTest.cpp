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
    for (const std::string& way :
         {"../secret.txt"s, "sub/../../site-secret.txt"s, "..%2fsecret.txt"s, "%2E%2e/secret.txt"s,
          "%252e%252e%252fsecret.txt"s, "..%c0%afsecret.txt"s, "..\\secret.txt"s, "../site-secret.txt"s,
          "/etc/passwd"s, "%2fetc%2fpasswd"s, outside + "/secret.txt", "index.html%00.txt"s, "%zz"s,
          "sub/%2e%2e/%2e%2e"s, std::string(5000, 'x')})
        expectRefused("/template/" + way);
    expectRefused("/template%2f..%2fsecret.txt");
    expectRefused("https://localhost/template/../secret.txt");
    EXPECT_TRUE(get("/template/sub/a.txt").starts_with("HTTP/1.1 200 "));
}

TEST_F(TraversalTest, LinksAreFollowedOnlyInside) {
    folder.write("site/sub/index.html", "inside");
    folder.write("site-secret.txt", "the secret");
    const std::string outside = folder.path().string();
    for (const auto& [link, target] : {std::pair{"relative.html", "sub/index.html"s},
                                       {"alias", "sub"},
                                       {"out.txt", "../secret.txt"},
                                       {"out-beside.txt", "../site-secret.txt"},
                                       {"up", ".."},
                                       {"self", "self"}})
        std::filesystem::create_symlink(target, folder / "site" / link);
    start();
    for (const char* const inside : {"relative.html", "alias/", "up/site/sub/index.html"})
        EXPECT_TRUE(get(std::string("/template/") + inside).ends_with("\r\n\r\ninside")) << inside;
    for (const char* const out : {"out.txt", "out-beside.txt", "up/secret.txt", "self"})
        expectRefused(std::string("/template/") + out);
}

} // namespace
} // namespace kestrin::content

#include "Fixture.h"

#include <boost/json.hpp>

#include <chrono>
#include <mutex>
#include <thread>

namespace kestrin::content {
namespace {

namespace json = boost::json;

/// The description that the cases start from.
json::object description() {
    return json::parse(R"({
        "id": "0f8fad5b-d9cb-469f-a165-70867728950e", "title": "Grüße \"quoted\"", "featureFlags": ["nativetriggers", "snap", "snap"],
        "scenes": [{"id": "s1", "title": "Boat & sea+sky"}, {"id": "s2", "title": "Hall"}, {"id": "s3", "title": "Hall"}],
        "pages": [{"id": "p1", "title": "Hall"}],
        "triggers": [{"id": "boat", "scene": "s1", "picture": "pictures/a boat.jpg", "width": 210, "height": 297.5},
                     {"id": "sea", "scene": "s2", "picture": "pictures/a boat.jpg"}],
        "texts": [{"id": "name", "scene": "s1", "text": "The Boat"}]})")
        .as_object();
}

class FolderTest : public ServerTest {
  protected:
    FolderTest() {
        folder.write("app/template/index.html", kPage);
        folder.write("app/pictures/a boat.jpg", "the boat");
        folder.write("app/notes.txt", "the author's own");
        describe(json::serialize(description()));
        options.reloadPeriod = std::chrono::milliseconds(20);
        options.log = [this](std::string_view line) {
            const std::lock_guard lock(mutex);
            lines += std::string(line) + "\n";
        };
        server.emplace(ApplicationFolder{folder / "app"}, options);
    }
    ~FolderTest() override { server->stop(); } // no line comes after

    void describe(const std::string& text) { folder.write("app/application.json", text); }
    json::value data(const std::string& path) {
        return json::parse(get("/api/v2/application/" + std::string(kId) + path).body).at("data");
    }
    bool isLogged(const std::string& part) {
        const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < patience) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            if (const std::lock_guard lock(mutex); lines.find(part) != std::string::npos)
                return true;
        }
        return false;
    }

    std::mutex mutex;
    std::string lines;
};

TEST_F(FolderTest, ServesWhatItDescribes) {
    ASSERT_EQ(server->start(), std::nullopt);
    EXPECT_EQ(get("/template/").body, kPage);
    EXPECT_EQ(data("?prune[relationships]=file,scene,page,collection"), json::parse(R"({
        "id": "0f8fad5b-d9cb-469f-a165-70867728950e", "type": "application", "attributes":
            {"title": "Grüße \"quoted\"", "feature_flags": "[\"nativetriggers\",\"snap\",\"snap\"]"}})"));

    const json::value bundle = json::parse(get("/api/v2/application/" + std::string(kId) +
                                               "/triggerbundleios?include=file&fields[file]=effective_uri")
                                               .body);
    const std::string origin = urlOf(server->port(), "");
    EXPECT_EQ(bundle, json::parse(R"({"data": [
        {"id": "boat", "type": "trigger", "attributes":
            {"scene_id": "s1", "file_id": "pictures/a boat.jpg", "width": 210.0, "height": 297.5}},
        {"id": "sea", "type": "trigger", "attributes": {"scene_id": "s2", "file_id": "pictures/a boat.jpg"}}],
        "included": [{"id": "pictures/a boat.jpg", "type": "file", "attributes":
            {"effective_uri": ")" +
                                  origin + R"(/picture/pictures/a%20boat.jpg"}}]})"));
    const Answer picture = client.get(origin + "/picture/pictures/a%20boat.jpg");
    EXPECT_EQ(picture.body, "the boat");
    EXPECT_EQ(picture.headers.at("Content-Type"), "image/jpeg");
    const auto mapped = client.get(origin + "/api/v2/application/" + kId + "/triggerbundleios",
                                   {{"Host", "content.kestrin.test"}});
    EXPECT_NE(mapped.body.find("\"https://content.kestrin.test/picture/"), std::string::npos) << mapped.body;

    EXPECT_EQ(data("/page?filter%5Btitle%5D=Hall"),
              json::parse(R"([{"id": "p1", "type": "page", "attributes": {"title": "Hall"}}])"));
    EXPECT_EQ(data("/scene?filter[title]=Boat%20%26%20sea+sky").at(0).at("id"), "s1");
    EXPECT_TRUE(isLogged("/page?filter%5Btitle%5D=Hall 200\n"));
}

TEST_F(FolderTest, ServesOfTheFolderOnlyWhatIsMeantForClients) {
    ASSERT_EQ(server->start(), std::nullopt);
    for (const char* const path : {"/template/application.json", "/picture/application.json",
                                   "/picture/pictures/../notes.txt", "/template/../notes.txt"})
        EXPECT_GE(get(path).status, 400u) << path;
    std::filesystem::remove(folder / "app/pictures/a boat.jpg");
    std::filesystem::create_symlink("../../secret.txt", folder / "app/pictures/a boat.jpg");
    EXPECT_EQ(get("/picture/pictures/a%20boat.jpg").status, 404u);
}

TEST_F(FolderTest, NamesFileAndField) {
    std::filesystem::create_symlink("..", folder / "app/up");
    const auto expectRefused = [&](const std::string& text, const std::string& message) {
        describe(text);
        const std::string error = server->start().value_or("it started");
        EXPECT_TRUE(error.starts_with((folder / "app").string()) || error.starts_with("the page ")) << error;
        EXPECT_NE(error.find(message), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    };
    expectRefused("{\n\"title\": \"a\",\n\"id\" 7}", "application.json: line 3: is not JSON");
    expectRefused("{}", "the field \"title\" is missing");
    struct {
        const char* field;
        json::value value;
        const char* message;
    } const cases[] = {
        {"/titel", "a", "there is no field \"titel\""},
        {"/featureFlags", {"snap", 7}, "featureFlags[1]: expected a text"},
        {"/pages/0/id", "s1", "pages[0].id: \"s1\" is there twice"},
        {"/template", "up", "template: \"up\" is not inside the folder"},
        {"/template", "pictures", "pictures/index.html"},
        {"/triggers/1/scene", "s9", "triggers[1].scene: there is no scene \"s9\""},
        {"/triggers/1/picture", "../secret.txt", "triggers[1].picture: \"../secret.txt\" is not inside"},
        {"/triggers/1/width", 0, "triggers[1].width: expected a number above 0"},
        {"/texts/0/text", "?!", "texts[0].text: expected letters or digits, at most 200 bytes"},
    };
    for (const auto& [field, value, message] : cases) {
        json::value changed = description();
        const auto slash = std::string_view(field).rfind('/');
        changed.at_pointer({field, slash}).as_object()[field + slash + 1] = value;
        expectRefused(json::serialize(changed), message);
    }
}

TEST_F(FolderTest, FollowsItsAuthorAndKeepsTheLastGoodState) {
    ASSERT_EQ(server->start(), std::nullopt);
    describe("{\"title\": \"half");
    EXPECT_TRUE(isLogged("application.json: line 1: is not JSON (what was there before is still served)\n"));
    EXPECT_EQ(data("").at("attributes").at("title"), "Grüße \"quoted\"");

    json::object changed = description();
    changed["title"] = "New";
    changed["template"] = "later";
    describe(json::serialize(changed));
    EXPECT_TRUE(isLogged("template: there is no \"later\""));
    EXPECT_EQ(get("/template/").body, kPage);
    folder.write("app/later/index.html", "later"); // the description itself does not change again
    EXPECT_TRUE(isLogged("the application was read again\n"));
    EXPECT_EQ(data("").at("attributes").at("title"), "New");
    EXPECT_EQ(get("/template/").body, "later");

    std::filesystem::remove(folder / "app/pictures/a boat.jpg");
    EXPECT_TRUE(isLogged("triggers[0].picture: there is no"));
    EXPECT_EQ(data("/triggerbundleios").as_array().size(), 2u);
}

} // namespace
} // namespace kestrin::content

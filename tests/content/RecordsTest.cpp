#include "Client.h"
#include "Fixture.h"

#include <boost/json.hpp>

namespace kestrin::content {
namespace {

namespace json = boost::json;

/// The text of a JSON string; anything else fails the test.
std::string text(const json::value& value) { return std::string(value.as_string()); }

std::string decoded(const std::string& base64) {
    gsize size = 0;
    guchar* const bytes = g_base64_decode(base64.c_str(), &size);
    const std::string text(reinterpret_cast<char*>(bytes), size);
    g_free(bytes);
    return text;
}

class RecordsTest : public ServerTest {
  protected:
    Answer get(const std::string& path) { return client.get(urlOf(server->port(), path)); }

    Client client;
};

TEST_F(RecordsTest, ApplicationRecordHoldsItsFlagsAsText) {
    start();
    const Answer answer =
        get(std::string("/api/v2/application/") + kId + "?prune[relationships]=file,scene,page,collection");
    ASSERT_EQ(answer.status, 200u);
    EXPECT_EQ(answer.headers.at("Content-Type"), "application/json");
    const json::value data = json::parse(answer.body).at("data");
    EXPECT_EQ(text(data.at("id")), kId);
    EXPECT_EQ(text(data.at("type")), "application");
    EXPECT_EQ(text(data.at("attributes").at("title")), application.title);
    const json::value flags = json::parse(text(data.at("attributes").at("feature_flags")));
    EXPECT_EQ(flags, (json::array{"photoshare", "snap", "photoshare"}));
}

TEST_F(RecordsTest, KeyStringOpensTheTemplateInBothForms) {
    start();
    const std::string port = std::to_string(server->port());
    const std::pair<Form, std::string> cases[] = {
        {Form::Direct, "https://127.0.0.1:" + port + "/template/index.html"},
        {Form::Mapped, "https://content.kestrin.test/template/index.html"},
    };
    for (const auto& [form, url] : cases) {
        const std::string code = server->keyString(form);
        EXPECT_EQ(code.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
                  std::string::npos);
        const json::value key = json::parse(decoded(code));
        EXPECT_EQ(key.as_object().size(), 3u);
        EXPECT_EQ(text(key.at("baseUrl")), url);
        EXPECT_TRUE(key.at("debugEnabled").as_bool());
        const std::string command = decoded(text(key.at("baseCommand")));
        EXPECT_EQ(command, std::string(R"([{"eventName":"sdkloadapplication","data":{"appID":")") + kId +
                               R"(","theme":"card3/www"}}])");
    }
    EXPECT_EQ(server->hostMapEntry(), "content.kestrin.test=127.0.0.1:" + port);
    EXPECT_EQ(server->hostMapEntry(Form::Direct), "127.0.0.1=127.0.0.1:" + port);
}

TEST_F(RecordsTest, ApplicationKeyIsTheDirectKeyString) {
    start();
    const Answer answer = get(std::string("/api/v2/application/") + kId + "/appkey");
    ASSERT_EQ(answer.status, 200u);
    EXPECT_EQ(text(json::parse(answer.body).at("data").at("appkey")), server->keyString(Form::Direct));
}

TEST_F(RecordsTest, WhatIsNotThereIsAnErrorRecord) {
    start();
    const std::string known = std::string("/api/v2/application/") + kId;
    for (const std::string& path :
         {std::string("/"), std::string("/favicon.ico"), std::string("/api/v2"),
          std::string("/api/v2/application"), std::string("/api/v2/application/"),
          std::string("/api/v2/application/%FF"), known + "/", known + "/other", known + "/appkey/",
          std::string("/api/v2/application/00000000-0000-4000-8000-000000000000"),
          std::string("/api/v2/application/00000000-0000-4000-8000-000000000000/appkey"),
          std::string("/template"), std::string("/template/none.js"), std::string("/templates/index.html")}) {
        SCOPED_TRACE(path);
        const Answer answer = get(path);
        EXPECT_EQ(answer.status, 404u);
        EXPECT_EQ(answer.headers.at("Content-Type"), "application/json");
        const json::value errors = json::parse(answer.body).at("errors");
        ASSERT_EQ(errors.as_array().size(), 1u);
        EXPECT_EQ(text(errors.at(0).at("status")), "404");
        EXPECT_EQ(text(errors.at(0).at("title")), "Not Found");
        EXPECT_NE(text(errors.at(0).at("detail")).find(path), std::string::npos);
    }
}

TEST_F(RecordsTest, OtherMethodsAreRefused) {
    start();
    for (const std::string path : {"/template/index.html", "/api/v2/application", "/none"})
        for (const std::string method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH", "TRACE", "MADEUP"}) {
            SCOPED_TRACE(method + " " + path);
            const Answer answer = client.request(method, urlOf(server->port(), path));
            EXPECT_EQ(answer.status, 405u);
            EXPECT_EQ(answer.headers.at("Allow"), "GET, HEAD");
            EXPECT_EQ(text(json::parse(answer.body).at("errors").at(0).at("status")), "405");
        }
}

} // namespace
} // namespace kestrin::content

#include "Fixture.h"
#include "content/GPointer.h"

#include <boost/json.hpp>

namespace kestrin::content {
namespace {

namespace json = boost::json;

const std::string kRecord = std::string("/api/v2/application/") + kId;

std::string decoded(const std::string& base64) {
    gsize size = 0;
    const GHandle<guchar, g_free> bytes(g_base64_decode(base64.c_str(), &size));
    return {reinterpret_cast<const char*>(bytes.get()), size};
}

TEST_F(ServerTest, KeyStringOpensTheTemplateInBothForms) {
    start();
    const std::string endpoint = "127.0.0.1:" + std::to_string(server->port());
    const std::pair<Form, std::string> cases[] = {
        {Form::Direct, "https://" + endpoint + "/template/index.html"},
        {Form::Mapped, "https://content.kestrin.test/template/index.html"},
    };
    for (const auto& [form, url] : cases) {
        json::object key = json::parse(decoded(server->keyString(form))).as_object();
        EXPECT_EQ(decoded(std::string(key["baseCommand"].as_string())),
                  std::string(R"([{"eventName":"sdkloadapplication","data":{"appID":")") + kId +
                      R"(","theme":"card3/www"}}])");
        key.erase("baseCommand");
        EXPECT_EQ(key, (json::object{{"baseUrl", url}, {"debugEnabled", true}}));
    }
    EXPECT_EQ(server->hostMapEntry(), "content.kestrin.test=" + endpoint);
    EXPECT_EQ(server->hostMapEntry(Form::Direct), "127.0.0.1=" + endpoint);
}

TEST_F(ServerTest, WhatIsNotThereIsAnErrorRecord) {
    start();
    const std::string other = "/api/v2/application/00000000-0000-4000-8000-000000000000";
    struct {
        std::string method, path;
        unsigned status = 404;
    } const cases[] = {{"GET", "/"},
                       {"GET", "/api/v2/application/"},
                       {"GET", "/api/v2/application/%FF"},
                       {"GET", kRecord + "/"},
                       {"GET", kRecord + "/appkey/"},
                       {"GET", other},
                       {"GET", other + "/appkey"},
                       {"GET", "/template"},
                       {"GET", "/template/none.js"},
                       {"GET", "/templates/index.html"},
                       {"POST", "/template/index.html", 405},
                       {"OPTIONS", kRecord, 405},
                       {"MADEUP", "/none", 405}};
    for (const auto& [method, path, status] : cases) {
        SCOPED_TRACE(method + " " + path);
        const Answer answer = client.request(method, urlOf(server->port(), path));
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(answer.headers.at("Content-Type"), "application/json");
        EXPECT_EQ(answer.headers.contains("Allow"), status == 405);
        const json::value errors = json::parse(answer.body).at("errors");
        ASSERT_EQ(errors.as_array().size(), 1u);
        EXPECT_EQ(errors.at(0).at("status"), json::string(std::to_string(status)));
        EXPECT_NE(errors.at(0).at("detail").as_string().find(status == 404 ? path : method),
                  json::string::npos);
    }
}

} // namespace
} // namespace kestrin::content

#include "services/util/KestrinUtil.h"
#include "services/util/CertificatePolicy.h"
#include "support/FakePlatform.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

#include <limits>

using namespace kestrin;
namespace json = boost::json;
using testing::ElementsAre;

namespace {

constexpr const char* kUrl = "https://apps.kestrin.example/x";
constexpr const char* kChallenge = "NSURLSession -> Completed HTTPS Challenge";

struct KestrinUtilTest : test::PlatformTest {
    ~KestrinUtilTest() override { certificatePolicy = CertificatePolicy::acceptAll; }

    /// What the callback of a request for kUrl got.
    std::optional<json::value> request() {
        std::optional<json::value> got = json::value("not called");
        KestrinUtil::sendAsyncRequest(kUrl, [&](auto answer) { got = std::move(answer); });
        EXPECT_EQ(got, json::value("not called"));
        runMain();
        return got;
    }
};

} // namespace

TEST_F(KestrinUtilTest, WritesContainersOrTheirEmptyForm) {
    const json::object map{{"a", 1}, {"b", "x/y"}}, broken{{"a", std::numeric_limits<double>::quiet_NaN()}};
    const json::array list{1, json::object()}, brokenList{broken};
    EXPECT_EQ(KestrinUtil::dictToJSON(&map), R"({"a":1,"b":"x/y"})");
    EXPECT_EQ(KestrinUtil::arrToJSON(&list), "[1,{}]");
    for (const json::object* none : {static_cast<const json::object*>(nullptr), &broken}) {
        EXPECT_EQ(KestrinUtil::dictToJSON(none), "{}");
        EXPECT_EQ(KestrinUtil::dictToJSON64(none), "e30=");
    }
    for (const json::array* none : {static_cast<const json::array*>(nullptr), &brokenList}) {
        EXPECT_EQ(KestrinUtil::arrToJSON(none), "[]");
        EXPECT_EQ(KestrinUtil::arrToJSON64(none), "W10=");
    }
}

TEST_F(KestrinUtilTest, ReadsWhateverTheTextHolds) {
    EXPECT_EQ(KestrinUtil::jsonToDict(std::nullopt), json::value(json::object()));
    EXPECT_EQ(KestrinUtil::jsonToArray(std::nullopt), json::value(json::array()));
    EXPECT_EQ(KestrinUtil::json64ToDict(std::nullopt), json::value(json::object()));
    EXPECT_EQ(KestrinUtil::jsonToDict("[1]"), json::value(json::array{1}));
    EXPECT_EQ(KestrinUtil::jsonToArray("{}"), json::value(json::object()));
    EXPECT_EQ(KestrinUtil::json64ToDict("W10="), json::value(json::array()));
    for (const char* none : {"", "{", "\xFF"}) {
        EXPECT_EQ(KestrinUtil::jsonToDict(none), std::nullopt);
        EXPECT_EQ(KestrinUtil::jsonToArray(none), std::nullopt);
    }
    for (const char* none : {"", "{}", "e30", "e30=\n", "ew=="})
        EXPECT_EQ(KestrinUtil::json64ToDict(none), std::nullopt) << none;
}

TEST_F(KestrinUtilTest, ARequestAnswersOnMainWhateverTheStatus) {
    system->server.answer(kUrl, R"({"errors":[]})", 404);
    EXPECT_EQ(request(), json::parse(R"({"errors":[]})"));
    EXPECT_THAT(takeLog(), ElementsAre(kChallenge));
    for (const std::string& none :
         {std::string(), std::string("5"), std::string("\"text\""), std::string("null"),
          std::string("<html>404</html>"), std::string(R"({"cut": )"), std::string(100'000, '[')}) {
        system->server.answer(kUrl, none);
        EXPECT_EQ(request(), std::nullopt) << none.substr(0, 20);
    }
    std::optional<json::value> got = json::value();
    KestrinUtil::sendAsyncRequest("not an address", [&](auto answer) { got = std::move(answer); });
    runMain();
    EXPECT_EQ(got, std::nullopt);
}

TEST_F(KestrinUtilTest, StrictDeploymentsLeaveCertificatesToTheSystem) {
    system->server.answer(kUrl, "{}");
    certificatePolicy = CertificatePolicy::strict;
    EXPECT_EQ(request(), std::nullopt);
    system->server.hasTrustedCertificate = true;
    EXPECT_NE(request(), std::nullopt);
}

TEST_F(KestrinUtilTest, FetchesOnAWorker) {
    system->server.answer(kUrl, "[1]");
    const auto codec = system->imageCodec.encodeJpeg(test::makeImage(3, 2), 1);
    system->server.answer("https://a/image", {codec.begin(), codec.end()});
    test::offMain([] {
        EXPECT_EQ(KestrinUtil::getJSONFromURL(kUrl), json::value(json::array{1}));
        EXPECT_EQ(KestrinUtil::getJSONFromURL("https://a/missing"), std::nullopt);
        EXPECT_EQ(KestrinUtil::getImageFromURL("https://a/image").pixelWidth(), 3);
        EXPECT_FALSE(KestrinUtil::getImageFromURL("https://a/missing").isValid());
        EXPECT_FALSE(KestrinUtil::getImageFromURL(kUrl).isValid());
    });
}

TEST_F(KestrinUtilTest, BundledJsonFallsBackToAnEmptyMap) {
    system->files.resources = {{"list.json", "[\"a\"]"}, {"broken.json", "{"}};
    EXPECT_EQ(KestrinUtil::loadJSONBundled("list"), json::value(json::array{"a"}));
    EXPECT_EQ(KestrinUtil::loadJSONBundled("broken"), json::value(json::object()));
    EXPECT_TRUE(takeLog().empty());
    EXPECT_EQ(KestrinUtil::loadJSONBundled("missing"), json::value(json::object()));
    EXPECT_THAT(takeLog(),
                ElementsAre("KestrinUtil::loadJSONBundled::No Bundle Exists, Sending Default Data."));
}

TEST_F(KestrinUtilTest, TellsTheDeviceByThePixelsOfItsLongSide) {
    const std::tuple<double, double, double, const char*> screens[] = {
        {320, 480, 2, "iphone4"},         {320, 568, 2, "iphone5"},
        {375, 667, 2, "iphone6"},         {414, 736, 3, "iphone6plus"},
        {414, 736, 2.609, "iphone6plus"}, {375, 812, 3, "unknown"},
        {568, 320, 2, "iphone5"},         {0, 0, 1, "unknown"},
        {1e30, 1, 1, "unknown"}};
    for (const auto& [width, height, scale, name] : screens) {
        system->app.screen = {{width, height}, 1, scale, true};
        EXPECT_EQ(KestrinUtil::getDeviceType(), name) << height * scale;
        EXPECT_TRUE(KestrinUtil::isDevice(name));
    }
    EXPECT_FALSE(KestrinUtil::isDevice("Unknown"));
}

TEST_F(KestrinUtilTest, AlertsComeLaterOnMain) {
    KestrinUtil::showAlert("message", "title", "button");
    test::offMain([] { KestrinUtil::errorNotify("broken"); });
    EXPECT_TRUE(system->app.alerts.empty());
    runMain();
    EXPECT_THAT(system->app.alerts, ElementsAre(test::FakeApplication::Alert{"title", "message", "button"},
                                                test::FakeApplication::Alert{"Error", "broken", "OK"}));
}

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

TEST_F(KestrinUtilTest, ConvertsContainersOrGivesTheirEmptyForm) {
    const json::object map{{"a", "x/y"}}, broken{{"a", std::numeric_limits<double>::quiet_NaN()}};
    const json::array brokenList{broken};
    EXPECT_EQ(KestrinUtil::dictToJSON(&map), R"({"a":"x/y"})");
    EXPECT_EQ(KestrinUtil::dictToJSON(&broken), "{}");
    EXPECT_EQ(KestrinUtil::dictToJSON64(nullptr), "e30=");
    EXPECT_EQ(KestrinUtil::arrToJSON(&brokenList), "[]");
    EXPECT_EQ(KestrinUtil::jsonToArray(std::nullopt), json::value(json::array()));
    EXPECT_EQ(KestrinUtil::json64ToDict("W10="), json::value(json::array()));
    for (const char* none : {"", "{}", "e30", "e30=\n", "ew=="})
        EXPECT_EQ(KestrinUtil::json64ToDict(none), std::nullopt) << none;
}

TEST_F(KestrinUtilTest, ARequestAnswersOnMainWhateverTheStatus) {
    system->server.answer(kUrl, R"({"errors":[]})", 404);
    EXPECT_EQ(request(), json::parse(R"({"errors":[]})"));
    EXPECT_THAT(takeLog(), ElementsAre("NSURLSession -> Completed HTTPS Challenge"));
    certificatePolicy = CertificatePolicy::strict;
    EXPECT_EQ(request(), std::nullopt);
    system->server.hasTrustedCertificate = true;
    EXPECT_NE(request(), std::nullopt);
    for (const char* none : {"", "5", "\"text\"", "null", "<html>404</html>", R"({"cut": )"}) {
        system->server.answer(kUrl, none);
        EXPECT_EQ(request(), std::nullopt) << none;
    }
}

TEST_F(KestrinUtilTest, BundledJsonFallsBackToAnEmptyMap) {
    system->files.resources = {{"broken.json", "{"}};
    for (const char* name : {"broken", "missing"})
        EXPECT_EQ(KestrinUtil::loadJSONBundled(name), json::value(json::object()));
    EXPECT_THAT(takeLog(),
                ElementsAre("KestrinUtil::loadJSONBundled::No Bundle Exists, Sending Default Data."));
}

TEST_F(KestrinUtilTest, TellsTheDeviceByThePixelsOfItsLongSide) {
    const std::tuple<double, double, double, const char*> screens[] = {
        {320, 480, 2, "iphone4"},         {568, 320, 2, "iphone5"}, {375, 667, 2, "iphone6"},
        {414, 736, 2.609, "iphone6plus"}, {375, 812, 3, "unknown"}, {1e30, 1, 1, "unknown"}};
    for (const auto& [width, height, scale, name] : screens) {
        system->app.screen = {{width, height}, 1, scale, true};
        EXPECT_EQ(KestrinUtil::getDeviceType(), name);
    }
}

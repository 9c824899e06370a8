#include "services/util/KestrinUtil.h"
#include "platform/CertificatePolicy.h"
#include "services/util/UploadTrust.h"
#include "support/FakePlatform.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <numeric>

using namespace kestrin;
using platform::certificatePolicy;
using platform::CertificatePolicy;
namespace json = boost::json;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kUrl = "https://apps.kestrin.example/x";

struct KestrinUtilTest : test::PlatformTest {
    using Answer = std::optional<json::value>;

    ~KestrinUtilTest() override { certificatePolicy = CertificatePolicy::acceptAll; }

    /// What the callback of a request got, once, later and on main.
    Answer await(const std::function<void(KestrinUtil::JsonCallback)>& request) {
        std::vector<Answer> got;
        request([&](auto answer) {
            EXPECT_TRUE(system->queues.isMain());
            got.push_back(std::move(answer));
        });
        EXPECT_TRUE(got.empty());
        system->queues.runWorkers();
        runMain();
        return got.at(0);
    }
    Answer get() {
        return await([](auto callback) { KestrinUtil::sendAsyncRequest(kUrl, callback); });
    }
};

} // namespace

TEST_F(KestrinUtilTest, ARequestAnswersOnMainWhateverTheStatus) {
    system->server.answer(kUrl, R"({"errors":[]})", 404);
    EXPECT_EQ(get(), json::parse(R"({"errors":[]})"));
    EXPECT_THAT(takeLog(), ElementsAre("NSURLSession -> Completed HTTPS Challenge"));
    certificatePolicy = CertificatePolicy::strict;
    EXPECT_EQ(get(), std::nullopt);
    system->server.hasTrustedCertificate = true;
    EXPECT_NE(get(), std::nullopt);
    for (const char* none : {"", "5", "\"text\"", "null", "<html>404</html>", R"({"cut": )"}) {
        system->server.answer(kUrl, none);
        EXPECT_EQ(get(), std::nullopt) << none;
    }
}

TEST_F(KestrinUtilTest, AnImageIsPostedWithItsParameters) {
    const platform::Image image = test::makeImage(8, 8);
    const json::object params{{"application_id", "a"}, {"file", "overwritten"}};
    const auto post = [&] {
        return await([&](auto callback) {
            KestrinUtil::sendAsyncImageRequestWithParams(kUrl, image, &params, callback);
        });
    };
    system->server.answer(kUrl, R"({"error":"none found"})", 500);
    EXPECT_EQ(post(), json::parse(R"({"error":"none found"})"));
    const platform::HttpRequest request = system->server.requests().at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.headers, (std::map<std::string, std::string>{{"Content-Type", "application/json"}}));
    const std::string file = KestrinUtil::convertImageToBase64JPEG(image);
    EXPECT_EQ(json::parse(request.body), json::value({{"application_id", "a"}, {"file", file}}));
    EXPECT_EQ(file.find("\r\n"), 64U);
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_TRUE(UploadTrust("https://[::1]:8443/x").acceptServerTrust("::1"));
    EXPECT_FALSE(UploadTrust("https://a.example/x").acceptServerTrust("b.example"));
    certificatePolicy = CertificatePolicy::strict;
    EXPECT_EQ(post(), std::nullopt);
}

TEST_F(KestrinUtilTest, KeepsImagesAsDocumentsAndReadsTheBundle) {
    const platform::Image image = test::makeImage(3, 2);
    KestrinUtil::saveJPGImage(image, "id.1");
    KestrinUtil::saveJPGImage({}, "absent");
    EXPECT_THAT(system->files.documentNames(), ElementsAre("id.1.jpg"));
    EXPECT_EQ(KestrinUtil::loadJPGImage("id.1").size(), image.size());
    EXPECT_FALSE(KestrinUtil::loadJPGImage("id").isValid());

    const auto bytes = system->imageCodec.encodeJpeg(image, 1);
    system->files.resources = {{"logo.png", {bytes.begin(), bytes.end()}}, {"broken.jpg", "no picture"}};
    EXPECT_TRUE(KestrinUtil::loadImageBundled("logo.png").isValid());
    EXPECT_TRUE(KestrinUtil::loadJPGImageBundled("logo").isValid());
    EXPECT_FALSE(KestrinUtil::loadJPGImageBundled("broken").isValid());
}

TEST_F(KestrinUtilTest, CropsWhatLiesWithinThePicture) {
    std::vector<std::uint8_t> pixels(4 * 3 * 4);
    std::iota(pixels.begin(), pixels.end(), std::uint8_t(0));
    const platform::Image image(4, 3, pixels, 2);
    const platform::Image part = KestrinUtil::cropImage(image, -1, 1, 3, std::numeric_limits<int>::max());
    ASSERT_EQ(part.size(), (platform::Size{2, 2}));
    EXPECT_EQ(part.pixels().front(), 16);
    EXPECT_EQ(part.pixels().end()[-4], 36);
    EXPECT_FALSE(KestrinUtil::cropImage(image, 4, 0, 1, 1).isValid());
}

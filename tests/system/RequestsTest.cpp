// What a page asks for, and what it is answered, over the room with its code and its pictures.

#include "KeptLog.h"
#include "Stage.h"

#include "content/lookup/CameraLookup.h"
#include "linux/storage/PixbufCodec.h"
#include "services/util/Singleton.h"
#include "session/RoomFile.h"
#include "support/ExifDate.h"
#include "support/TemporaryFolder.h"

#include <boost/json/array.hpp>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <opencv2/imgproc.hpp>
#include <sys/syscall.h>

#include <cstdlib>
#include <iterator>

namespace kestrin::test {

namespace {

namespace fs = std::filesystem;
using boost::json::object;
using boost::json::value;
using platform::Image;
using session::Vector3;

/// The default room, with a sign beside its poster, as a camera sees it that stands still.
std::shared_ptr<const session::Room> seenFrom(const Vector3& eye, const Vector3& target) {
    auto room = std::make_shared<session::Room>(*session::defaultRoom());
    const session::CameraKey key{0, eye, session::rotationOf(session::lookAt(eye, target))};
    room->path = session::CameraPath({key}, 1, 0, {});
    cv::Mat4b sign(160, 400, cv::Vec4b(255, 255, 255, 255));
    cv::putText(sign, "Harbour", {40, 110}, cv::FONT_HERSHEY_DUPLEX, 2.4, {0, 0, 0, 255}, 5, cv::LINE_AA);
    const std::vector<std::uint8_t> pixels(sign.data, sign.data + sign.total() * 4);
    room->pictures.push_back({"sign",
                              session::Quad::facing({0, 0, 1}, {0, 1, 0}, {-0.2F, 1.33F, -2.47F}, 0.5F, 0.2F),
                              Image(400, 160, pixels)});
    return room;
}

Image imageIn(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    return gtk::PixbufCodec().decode({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

struct Requests : testing::Test {
    Requests() { resetSingletons(); } // one of them settles at its first use whether codes are looked for
    void open() {
        stage.emplace(options);
        ASSERT_TRUE(stage->runUntil([&] { return stage->told("pose").size() > 5; }, kPatience));
    }
    /// An application with the poster as its trigger, under a name that the room does not know.
    void offerPoster() {
        const auto jpeg = gtk::PixbufCodec().encodeJpeg(session::defaultRoom()->picture("poster"), 0.9);
        folder.write("poster.jpg", {jpeg.begin(), jpeg.end()});
        options.application.triggers = {{"hall-poster", "hall", "poster.jpg"}};
        options.application.folder = folder.path();
        options.room = seenFrom({-0.6F, 1.22F, -0.9F}, {-0.6F, 1.22F, -2.5F});
    }
    value snap() { return stage->answer("client.commands.scanTriggerSnap()", "scanResult"); }

    const TemporaryFolder folder;
    StageOptions options;
    std::optional<Stage> stage;
};

TEST_F(Requests, CodesAreReadAndSnapped) {
    options.application.featureFlags = {"qrscanner"};
    options.room = seenFrom({0.9F, 1.3F, 0.35F}, {2, 1.3F, 0.35F});
    open();
    const std::string text = "https://kestrin.example/room";
    EXPECT_EQ(stage->answer("client.commands.startQRScanner()", "qrResult"), (object{{"text", text}}));
    EXPECT_EQ(snap(), (object{{"rawData", object{{"id", text}, {"type", "qrcode"}}}, {"error", ""}}));
}

TEST_F(Requests, ATrackedTriggerIsSnapped) {
    options.application.featureFlags = {"nativetriggers", "snap", "triggerimage"};
    offerPoster();
    open();
    ASSERT_TRUE(stage->runUntil([&] { return !stage->told("triggerAdded").empty(); }, kPatience));
    EXPECT_EQ(snap(),
              (object{{"rawData", object{{"id", "hall-poster"}, {"type", "trigger"}}}, {"error", ""}}));
}

TEST_F(Requests, TheServerIsAskedWhatAPictureShows) {
    options.lookup = std::make_shared<content::CameraLookup>();
    options.application.texts = {{"pier", "waterside", "Harbour"}};
    offerPoster();
    open();
    EXPECT_TRUE(stage->capture(*stage->view().getCameraView()).isValid());
    const auto found = [](const char* id, const char* type, const char* scene) {
        return object{{"rawData", object{{"id", id}, {"type", type}, {"scene_id", scene}}}, {"error", ""}};
    };
    EXPECT_EQ(snap(), found("hall-poster", "trigger", "hall"));
    EXPECT_EQ(stage->answer("client.commands.scanMarker()", "scanResult"),
              found("pier", "text", "waterside"));
}

/// Root writes everywhere; from now on this thread does not, nor do those that it starts.
void obeyPermissions() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct rights[2];
    ASSERT_EQ(syscall(SYS_capget, &header, rights), 0);
    rights[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
    ASSERT_EQ(syscall(SYS_capset, &header, rights), 0);
}

TEST_F(Requests, AScreenshotShowsTheCameraWithThePageAboveIt) {
    obeyPermissions();
    options.granted = {"photos"};
    options.room = seenFrom({-0.6F, 1.22F, -0.9F}, {-0.6F, 1.22F, -2.5F});
    open();
    const Image camera = stage->capture(*stage->view().getCameraView());
    const std::string capture = R"(
        const canvas = Object.assign(document.createElement('canvas'), {width: 320, height: 240});
        const context = canvas.getContext('2d');
        context.fillStyle = '#f0f';
        context.fillRect(0, 0, 160, 120);
        client.commands.captureScreenshot({image: canvas.toDataURL()});)";
    const fs::path pictures = home() / "Kestrin";
    const auto files = [&] {
        return fs::exists(pictures) ? std::distance(fs::directory_iterator(pictures), {}) : 0;
    };
    const KeptLog log;
    const gtk::GOwned<GDateTime, g_date_time_unref> now(g_date_time_new_now_local());
    stage->evaluate("{" + capture + "}");
    ASSERT_TRUE(stage->runUntil([&] { return log.has("Image Saved Successfully."); }, kPatience));
    ASSERT_EQ(files(), 1);
    const fs::path file = *fs::directory_iterator(pictures);
    EXPECT_EQ(file.extension(), ".jpg");
    EXPECT_GE(exifDateIn(file), gtk::GText(g_date_time_format(now.get(), "%Y:%m:%d %H:%M:%S")).get());

    const Image photo = imageIn(file);
    ASSERT_EQ(photo.size(), (platform::Size{640, 480}));
    ASSERT_EQ(camera.size(), photo.size());
    double off[2] = {0, 0}; // from what the page has drawn, and from the camera's picture elsewhere
    for (std::size_t i = 0; i < photo.pixels().size(); ++i) {
        const std::size_t x = i / 4 % 640, y = i / 4 / 640;
        const bool isPage = x < 320 && y < 240;
        const int wanted = !isPage ? camera.pixels()[i] : i % 4 == 1 ? 0 : 255;
        off[isPage ? 0 : 1] += std::abs(photo.pixels()[i] - wanted);
    }
    EXPECT_LT(off[0] / (320 * 240 * 4), 3);
    EXPECT_LT(off[1] / (320 * 240 * 12), 3);

    fs::permissions(pictures, fs::perms::owner_read | fs::perms::owner_exec);
    stage->evaluate("{" + capture + "}");
    EXPECT_TRUE(stage->runUntil([&] { return log.has("Image Saving Failed::reason= "); }, kPatience));
    EXPECT_EQ(files(), 1);
    fs::permissions(pictures, fs::perms::owner_all);
}

TEST_F(Requests, AnotherApplicationTakesTheStage) {
    options.application.id = "11111111-0000-4000-8000-000000000000";
    content::Application other = showing("witness");
    other.id = "22222222-0000-4000-8000-000000000000";
    other.featureFlags = {"other"};
    content::ServerOptions elsewhere;
    elsewhere.address = "127.0.0.2";
    content::ContentServer server(other, elsewhere);
    ASSERT_EQ(server.start(), std::nullopt);
    options.hostMap = server.hostMapEntry(content::Form::Direct);
    open();
    const KeptLog log;
    stage->evaluate("client.commands.changeApp('no key string')");
    EXPECT_TRUE(stage->runUntil([&] { return log.has("Invalid Settings"); }, kPatience));
    stage->forgetTold();
    const value info = stage->answer(
        "client.commands.changeApp('" + server.keyString(content::Form::Direct) + "')", "deviceInfo");
    EXPECT_EQ(info.at("app_change_from"), value(options.application.id));
    EXPECT_EQ(info.at("app_change_into"), value(other.id));
    EXPECT_EQ(stage->answer("client.commands.webUpdate({event: 'place', value: location.hostname})", "place"),
              "127.0.0.2");
    EXPECT_EQ(stage->answer("client.commands.startAREngine()", "flags"), boost::json::array{"other"});
}

} // namespace

} // namespace kestrin::test

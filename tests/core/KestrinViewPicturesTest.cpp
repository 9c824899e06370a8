#include "KestrinViewTest.h"
#include "core/config/KestrinFeatureFlags.h"
#include "services/KestrinQRScanner.h"
#include "support/FakePixelBuffer.h"
#include "tracking/KestrinTriggerList.h"

#include <boost/json.hpp>

namespace kestrin {

using namespace platform;
using namespace test;

namespace json = boost::json;

namespace {

/// A view of 100 by 200 points on a screen of scale 1, its camera picture, and a server at work.
struct Pictures : KestrinViewTest {
    Pictures() {
        system->app.screen.nativeScale = 1;
        startUp();
        view->resize(100, 200);
        system->graphics.newest->picture = makeImage(100, 200, 255);
        for (const char* url : {"data:,page", "https://elsewhere.example/page.png"})
            system->server.answer(url, encoded(makeImage(40, 300, 90)));
        runMain();
        takeScripts();
    }
    std::string encoded(const Image& image) const {
        const auto bytes = system->imageCodec.encodeJpeg(image, 1);
        return {bytes.begin(), bytes.end()};
    }
    /// A worker may fetch, main go on, and a worker save.
    void finish() {
        for (int turn = 0; turn < 2; ++turn) {
            system->queues.runWorkers();
            runMain();
        }
    }
    /// What was posted last: the address, and the body with the size of the picture for the picture.
    std::string lastPost() const {
        const auto request = system->server.requests().back();
        auto body = json::parse(request.body).as_object();
        std::string file(body.at("file").as_string());
        std::erase_if(file, [](char c) { return c == '\r' || c == '\n'; });
        const auto picture = base64Decode(file).value_or("");
        body["file"] = picture.substr(0, picture.find(' ', picture.find(' ') + 1));
        return request.url + " " + json::serialize(body);
    }
    void snap(const std::string& data = "{}") {
        post("onScanTriggerSnap", data);
        finish();
    }
    static std::string scanned(std::string_view rawData, std::string_view error = R"("")") {
        return event("ScanMarkerResult", format(R"({"rawData":%@,"error":%@})", rawData, error));
    }
    const std::string none = R"("none")", null = R"("null")";
};

} // namespace

TEST_F(Pictures, AScreenshotIsSavedAndShared) {
    for (const char* event : {"onCaptureScreenshot", "onCaptureScreenshotShare"}) {
        post(event, R"({"image":"data:,page"})");
        finish();
        EXPECT_TRUE(system->app.presented.empty()) << "nobody asked to share it";
    }
    ASSERT_EQ(system->files.photos().size(), 2U);
    EXPECT_EQ(system->imageCodec.decode(system->files.photos()[0]).size(), (Size{100, 300}));

    post("onCaptureScreenshot", R"({"image":"https://elsewhere.example/page.png","share":false})");
    system->graphics.newest->picture = makeImage(1, 1, 7);
    finish();
    EXPECT_EQ(system->files.photos().size(), 3U);
    EXPECT_EQ(system->files.photos()[2], system->files.photos()[0]) << "of the moment when it was asked for";
    EXPECT_EQ(system->app.presented.size(), 1U) << "false counts as present";
    KestrinFeatureFlags::getInstance()->put("photoshare");
    post("onCaptureScreenshot", R"({"image":"data:,page"})");
    EXPECT_EQ(system->app.presented.size(), 2U);
    post("onCaptureScreenshot");
    EXPECT_EQ(system->app.presented.size(), 2U) << "without the page's picture";
}

TEST_F(Pictures, ThePhotoPromptHidesTheApplicationsActivityFromThePage) {
    system->person.photoStatus = Authorization::notDetermined;
    post("onCaptureScreenshot", R"({"image":"data:,page","share":1})");
    EXPECT_TRUE(KestrinView::isPhotoAccessMinimize);
    system->person.answerPhotos(false);
    EXPECT_FALSE(KestrinView::isPhotoAccessMinimize);
    finish();
    ASSERT_EQ(system->app.alerts.size(), 1U);
    EXPECT_NE(system->app.alerts[0].message.find("your gallery"), std::string::npos);
    EXPECT_TRUE(system->files.photos().empty() && system->app.presented.empty());
}

TEST_F(Pictures, SharesThePictureAtAnAddress) {
    post("onShare", R"({"imageUrl":"https://elsewhere.example/page.png","text":"Look"})");
    EXPECT_TRUE(system->app.shareSheets.empty()) << "main does not wait";
    finish();
    post("onShare", R"({"text":"Look"})");
    ASSERT_EQ(system->app.shareSheets.size(), 2U);
    for (const auto& sheet : system->app.shareSheets)
        EXPECT_EQ(std::get<std::string>(sheet.at(0)), "Look");
    EXPECT_EQ(std::get<Image>(system->app.shareSheets[0].at(1)).size(), (Size{40, 300}));
    EXPECT_FALSE(std::get<Image>(system->app.shareSheets[1].at(1)).isValid());
}

TEST_F(Pictures, ScansACrop) {
    const std::string address = "https://shop.example/api/v2/triggertext/find";
    system->server.answer(address, R"({"data":[1]})");
    const auto scan = [&](const std::string& data) {
        post("onScanMarker", data);
        finish();
        return lastPost();
    };
    EXPECT_EQ(scan("{}"), address + R"( {"file":"84 60"})");
    EXPECT_EQ(scan(R"({"startX":-1,"startY":150,"width":30})"), address + R"( {"file":"30 50"})");
    EXPECT_EQ(scan(R"({"postURL":"https://own.example/x","startX":100})"),
              R"(https://own.example/x {"file":""})");
    const auto found = scanned(R"({"data":[1]})");
    EXPECT_EQ(takeScripts(), (Lines{found, found, scanned(none)}));
}

TEST_F(Pictures, SnapsWithTheServerWhereNothingElseCan) {
    const std::string address = "https://shop.example/api/v2/triggersnap/find";
    for (const char* answer : {"", R"({"error":"x","errors":[]})", R"({"error":null})", R"({"errors":[]})",
                               R"({"id":"t"})", "[3]"}) {
        system->server.answer(address, answer);
        snap();
    }
    EXPECT_EQ(lastPost(), address + R"( {"application_id":"A1","file":"480 960"})");
    EXPECT_EQ(takeScripts(), (Lines{scanned(none, null), scanned(none, R"("x")"), scanned(none, "null"),
                                    scanned(none, null), scanned(R"({"id":"t"})"), scanned("[3]")}));
    snap(R"({"appId":"Z9","postURL":"https://own.example/x"})");
    EXPECT_EQ(lastPost(), R"(https://own.example/x {"application_id":"Z9","file":"480 960"})");
}

TEST_F(Pictures, SnapsATriggerInViewEightTimes) {
    for (const char* flag : {"nativetriggers", "triggerimage"})
        KestrinFeatureFlags::getInstance()->put(flag);
    KestrinTriggerList::getInstance()->resync();
    snap();
    advance(0.75);
    EXPECT_EQ(takeScripts(), Lines{}) << "the eighth look is at 0.7 s, its end at 0.8 s";
    advance(0.1);
    EXPECT_EQ(takeScripts(), Lines{scanned(none, null)});

    const auto trigger = std::make_shared<ArImageAnchor>();
    trigger->transform = Matrix::identity();
    trigger->transform[3] = {5, 5, 0, 1};
    trigger->referenceImage = std::make_shared<ArReferenceImage>(ArReferenceImage{"poster", {}, 1});
    const auto frame = makeFrame(1);
    frame->anchors = {trigger};
    post("onResumeAREngine");
    snap();
    advance(0.65);
    session().send(frame);
    takeScripts();
    advance(0.1);
    EXPECT_EQ(takeScripts(), Lines{scanned(R"({"id":"poster","type":"trigger"})")});
}

TEST_F(Pictures, SnapsAndScansCodes) {
    KestrinFeatureFlags::getInstance()->put("qrscanner");
    const PixelBufferRef codes = std::make_shared<FakePixelBuffer>(64, 48);
    system->eyes.show(codes, {{"left"}, {"right"}});
    const auto scanner = KestrinQRScanner::getInstance();
    const auto look = [&] {
        scanner->onScan(codes, PictureOrientation::up);
        finish();
    };
    snap();
    advance(1.9);
    EXPECT_TRUE(scanner->wantsScan());
    advance(0.2);
    EXPECT_FALSE(scanner->wantsScan());
    look();
    EXPECT_EQ(logged("Snapped QR Code - left"), 0);
    takeScripts();
    snap();
    snap();
    look();
    EXPECT_EQ(logged("Snapped QR Code - left"), 1);
    EXPECT_EQ(takeScripts(), (Lines{scanned(R"({"id":"left","type":"qrcode"})"),
                                    scanned(R"({"id":"right","type":"qrcode"})")}));
    post("onStartQRScanner");
    look();
    look();
    EXPECT_EQ(takeScripts(), (Lines{event("QRScannerResult", R"({"text":"left"})"),
                                    event("QRScannerResult", R"({"text":"right"})")}));
    post("onStartQRScanner");
    post("onStopQRScanner");
    EXPECT_FALSE(scanner->wantsScan());
    system->level = 10.3;
    post("onStartQRScanner");
    EXPECT_FALSE(scanner->wantsScan());
}

} // namespace kestrin

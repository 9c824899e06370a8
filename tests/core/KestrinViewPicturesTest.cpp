#include "KestrinViewTest.h"

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
}

TEST_F(Pictures, SharesThePictureAtAnAddress) {
    post("onShare", R"({"imageUrl":"https://elsewhere.example/page.png","text":"Look"})");
    EXPECT_TRUE(system->app.shareSheets.empty()) << "main does not wait";
    finish();
    ASSERT_EQ(system->app.shareSheets.size(), 1U);
    const auto& sheet = system->app.shareSheets[0];
    EXPECT_EQ(std::get<std::string>(sheet.at(0)), "Look");
    EXPECT_EQ(std::get<Image>(sheet.at(1)).size(), (Size{40, 300}));
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
    const auto found = scanned(R"({"data":[1]})");
    EXPECT_EQ(takeScripts(), (Lines{found, found}));
}

TEST_F(Pictures, SnapsWithTheServerWhereNothingElseCan) {
    const std::string address = "https://shop.example/api/v2/triggersnap/find";
    for (const char* answer : {"", R"({"error":"x","errors":[]})", R"({"error":null})", R"({"id":"t"})"}) {
        system->server.answer(address, answer);
        post("onScanTriggerSnap");
        finish();
    }
    EXPECT_EQ(lastPost(), address + R"( {"application_id":"A1","file":"480 960"})");
    EXPECT_EQ(takeScripts(), (Lines{scanned(none, null), scanned(none, R"("x")"), scanned(none, "null"),
                                    scanned(R"({"id":"t"})")}));
}

} // namespace kestrin

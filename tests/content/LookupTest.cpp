#include "Fixture.h"
#include "RawConnection.h"
#include "content/GPointer.h"
#include "content/TextMatch.h"
#include "content/lookup/CameraLookup.h"

#include <boost/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace kestrin::content {
namespace {

namespace json = boost::json;

/// A picture of its own for each seed, rich in corners and of no symmetry.
cv::Mat painted(unsigned seed) {
    cv::Mat picture(300, 210, CV_8UC1, cv::Scalar(225));
    cv::RNG random(seed);
    const auto place = [&] { return cv::Point(random.uniform(0, 210), random.uniform(0, 300)); };
    for (int i = 0; i < 90; ++i) {
        const double shade = random.uniform(0, 255);
        const cv::Point at = place();
        if (i % 3 == 0)
            cv::rectangle(picture, at, at + place() / 6, shade, -1);
        else if (i % 3 == 1)
            cv::circle(picture, at, random.uniform(2, 15), shade, -1, cv::LINE_AA);
        else
            cv::line(picture, place(), at, shade, random.uniform(1, 3), cv::LINE_AA);
    }
    return picture;
}

/// A printed line.
cv::Mat sign(const std::string& line) {
    cv::Mat picture(300, 800, CV_8UC1, cv::Scalar(190));
    cv::putText(picture, line, {60, 150}, cv::FONT_HERSHEY_DUPLEX, 1.8, 30, 2, cv::LINE_AA);
    return picture;
}

using Corners = std::vector<cv::Point2f>;
const Corners kSlanted{{150, 40}, {325, 60}, {310, 325}, {140, 290}};
const Corners kMirrored{kSlanted[1], kSlanted[0], kSlanted[3], kSlanted[2]};
const Corners kFilling{{0, 0}, {480, 40}, {470, 320}, {10, 360}};

/// What a camera sees of a picture on a wall of many things: with its corners there, noisy and dim.
cv::Mat seen(const cv::Mat& picture, const Corners& corners = kSlanted) {
    cv::Mat view;
    cv::resize(painted(99), view, {480, 360});
    const auto width = float(picture.cols), height = float(picture.rows);
    const Corners own{{0, 0}, {width, 0}, {width, height}, {0, height}};
    cv::warpPerspective(picture, view, cv::getPerspectiveTransform(own, corners), view.size(), cv::INTER_AREA,
                        cv::BORDER_TRANSPARENT);
    cv::Mat noise(view.size(), CV_8UC1);
    cv::RNG(7).fill(noise, cv::RNG::NORMAL, 12, 8);
    return view * 0.7 + noise;
}

std::string jpegOf(const cv::Mat& picture, int quality = 95) {
    std::vector<unsigned char> bytes;
    cv::imencode(".jpg", picture, bytes, {cv::IMWRITE_JPEG_QUALITY, quality});
    return {bytes.begin(), bytes.end()};
}

class LookupTest : public ServerTest {
  protected:
    LookupTest() {
        for (const unsigned seed : {1u, 2u, 3u}) {
            const std::string name = std::to_string(seed);
            folder.write("app/" + name + ".jpg", jpegOf(painted(seed)));
            application.triggers.push_back({"trigger-" + name, "scene-" + name, name + ".jpg"});
        }
        folder.write("app/broken.png", "no picture");
        application.triggers.push_back({"broken", "s", "broken.png"});
        application.texts = {{"light", "tower", "Harbour lighthouse"}, {"dock", "pier", "The dock"}};
        application.folder = folder / "app";
        options.lookup = std::make_shared<CameraLookup>();
    }

    Answer post(const std::string& body, const std::string& address = "triggersnap") {
        return client.request("POST", urlOf(server->port(), "/api/v2/" + address + "/find"),
                              {{"Content-Type", "application/json"}}, body);
    }
    /// As a client sends it: base64 in lines of 64 characters.
    static std::string bodyOf(const std::string& jpeg, const std::string& id = kId) {
        const GText base64(g_base64_encode(reinterpret_cast<const guchar*>(jpeg.data()), jpeg.size()));
        std::string lines;
        for (std::string_view rest = base64.get(); !rest.empty();
             rest.remove_prefix(std::min<std::size_t>(64, rest.size())))
            lines += (lines.empty() ? "" : "\r\n") + std::string(rest.substr(0, 64));
        return json::serialize(json::object{{"application_id", id}, {"file", lines}});
    }
};

TEST_F(LookupTest, FindsWhatIsSeen) {
    start();
    for (const unsigned seed : {3u, 1u}) {
        const std::string name = std::to_string(seed);
        const Answer answer = post(bodyOf(jpegOf(seen(painted(seed)))));
        EXPECT_EQ(answer.status, 200u) << answer.error;
        EXPECT_EQ(
            json::parse(answer.body),
            (json::object{{"id", "trigger-" + name}, {"type", "trigger"}, {"scene_id", "scene-" + name}}));
    }
    folder.write("app/2.jpg", jpegOf(painted(4))); // what the author replaces is seen from now on
    std::filesystem::last_write_time(folder / "app/2.jpg", std::filesystem::file_time_type::clock::now());
    EXPECT_NE(post(bodyOf(jpegOf(seen(painted(4))))).body.find("trigger-2"), std::string::npos);
    EXPECT_EQ(post(bodyOf(jpegOf(seen(painted(2))))).status, 404u);
    const Answer text = post(bodyOf(jpegOf(seen(sign("Harbour Lighthouse"), kFilling))), "triggertext");
    EXPECT_EQ(json::parse(text.body),
              (json::object{{"id", "light"}, {"type", "text"}, {"scene_id", "tower"}}))
        << text.error;
}

TEST_F(LookupTest, SaysWhatItCannotFind) {
    start();
    const std::string picture = jpegOf(seen(painted(1)));
    struct {
        std::string body;
        unsigned status;
        const char *part, *address = "triggersnap";
    } const cases[] = {
        {bodyOf(jpegOf(seen(painted(5)))), 404, "shows no trigger"},
        {bodyOf(jpegOf(seen(painted(1), kMirrored))), 404, "shows no trigger"},
        {bodyOf(jpegOf(seen(sign("Keep off the grass"), kFilling))), 404, "shows no text", "triggertext"},
        {bodyOf(picture, "00000000-0000-4000-8000-000000000000"), 404, "no such application"},
        {bodyOf(picture.substr(0, 300)), 400, "not a JPEG"},
        {bodyOf(jpegOf(cv::Mat(6000, 6000, CV_8UC1, cv::Scalar(0)), 5)), 400, "not a JPEG"},
        {"{\"file\": 7}", 400, "no picture"},
        {"[]", 400, "not a JSON object"},
    };
    for (const auto& [body, status, part, address] : cases) {
        const Answer answer = post(body, address);
        EXPECT_EQ(answer.status, status) << part << answer.error;
        EXPECT_NE(answer.body.find(part), std::string::npos) << answer.body;
    }
    EXPECT_NE(post(std::string(9 << 20, 'x')).status, 200u);
}

TEST(NearestText, ForgivesWhatReadingGetsWrong) {
    const std::vector<PrintedText> texts{{"harbour", "", "Harbour"},
                                         {"room", "", "Room 12"},
                                         {"cafe", "", "CAFÉ «Zur Brücke»"},
                                         {"sea", "", "Sea"},
                                         {"none", "", "!"}};
    const std::pair<const char*, const char*> cases[] = {
        {"the HARBOUR\n", "harbour"}, {"Harbor", "harbour"}, {"Room I2", "room"}, {"Room 13", ""},
        {"cafe zur brucke", "cafe"},  {"the sea!", "sea"},   {"\xff sea", ""},
    };
    for (const auto& [read, id] : cases) {
        const PrintedText* const found = nearestText(texts, read);
        EXPECT_EQ(found ? found->id : "", id) << read;
    }
}

TEST_F(LookupTest, ClientsThatLeaveDoNoHarm) {
    const GLogLevelFlags before =
        g_log_set_always_fatal(GLogLevelFlags(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
    start();
    const std::string body = bodyOf(jpegOf(seen(painted(1))));
    const std::string request = "POST /api/v2/triggersnap/find HTTP/1.1\r\nHost: h\r\nContent-Length: " +
                                std::to_string(body.size()) + "\r\n\r\n" + body;
    RawConnection first(server->port());
    first.send(request);
    first.reset();
    EXPECT_EQ(post(body).status, 200u);
    RawConnection last(server->port());
    last.send(request);
    server->stop();
    g_log_set_always_fatal(before);
}

} // namespace
} // namespace kestrin::content

#include "Client.h"
#include "Fixture.h"
#include "RawConnection.h"
#include "content/GPointer.h"
#include "content/lookup/FeatureLookup.h"

#include <boost/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace kestrin::content {
namespace {

namespace json = boost::json;

/// A picture of its own for each seed, rich in corners and of no symmetry.
cv::Mat painted(unsigned seed) {
    cv::Mat picture(600, 420, CV_8UC3, cv::Scalar(215, 225, 230));
    cv::RNG random(seed);
    const auto place = [&] { return cv::Point(random.uniform(0, 420), random.uniform(0, 600)); };
    for (int i = 0; i < 90; ++i) {
        const cv::Scalar color(random.uniform(0, 255), random.uniform(0, 255), random.uniform(0, 255));
        const std::vector<cv::Point> shape{place(), place(), place()};
        const cv::Point middle = place();
        if (i % 3 == 0)
            cv::rectangle(picture, middle, middle + cv::Point(random.uniform(10, 70), random.uniform(10, 70)),
                          color, -1);
        else if (i % 3 == 1)
            cv::circle(picture, middle, random.uniform(4, 30), color, -1, cv::LINE_AA);
        else
            cv::line(picture, shape[0], middle, color, random.uniform(1, 5), cv::LINE_AA);
    }
    return picture;
}

/// What a camera sees of a picture on a wall of many things: at a slant, smaller, noisy and dim.
cv::Mat seen(const cv::Mat& picture, bool mirrored = false) {
    cv::Mat wall;
    cv::resize(painted(99), wall, {1280, 960});
    const auto width = float(picture.cols), height = float(picture.rows);
    std::vector<cv::Point2f> from{{0, 0}, {width, 0}, {width, height}, {0, height}};
    const std::vector<cv::Point2f> to{{420, 210}, {700, 260}, {660, 690}, {380, 590}};
    if (mirrored)
        from = {from[1], from[0], from[3], from[2]};
    const cv::Mat perspective = cv::getPerspectiveTransform(from, to);
    cv::Mat view = wall;
    cv::warpPerspective(picture, view, perspective, view.size(), cv::INTER_AREA, cv::BORDER_TRANSPARENT);
    cv::Mat noise(view.size(), CV_8UC3);
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
        application.folder = folder / "app";
        options.lookup = std::make_shared<FeatureLookup>();
    }

    Answer post(const std::string& body) {
        return client.request("POST", urlOf(server->port(), "/api/v2/triggersnap/find"),
                              {{"Content-Type", "application/json"}}, body);
    }
    /// As a client sends it: base64 in lines of 64 characters.
    static std::string bodyOf(const std::string& jpeg, const std::string& id = kId) {
        const GText base64(g_base64_encode(reinterpret_cast<const guchar*>(jpeg.data()), jpeg.size()));
        std::string lines = base64.get();
        for (std::size_t at = 64; at < lines.size(); at += 66)
            lines.insert(at, "\r\n");
        return json::serialize(json::object{{"application_id", id}, {"file", lines}});
    }

    Client client;
};

TEST_F(LookupTest, FindsTheTriggerThatIsSeen) {
    start();
    for (const unsigned seed : {3u, 1u, 2u}) {
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
}

TEST_F(LookupTest, SaysWhatItCannotFind) {
    start();
    const std::string picture = jpegOf(seen(painted(1)));
    const std::tuple<std::string, unsigned, const char*> cases[] = {
        {bodyOf(jpegOf(seen(painted(5)))), 404, "shows no trigger"},
        {bodyOf(jpegOf(seen(painted(1), true))), 404, "shows no trigger"},
        {bodyOf(jpegOf(cv::Mat(480, 640, CV_8UC3, cv::Scalar(90, 90, 90)))), 404, "shows no trigger"},
        {bodyOf(jpegOf(cv::Mat(1, 1, CV_8UC1, cv::Scalar(90)))), 404, "shows no trigger"},
        {bodyOf(picture, "00000000-0000-4000-8000-000000000000"), 404, "no such application"},
        {bodyOf(picture.substr(0, 300)), 400, "not a JPEG"},
        {bodyOf("GIF89a"), 400, "not a JPEG"},
        {bodyOf(jpegOf(cv::Mat(6000, 6000, CV_8UC1, cv::Scalar(0)), 5)), 400, "not a JPEG"},
        {"{\"file\": 7}", 400, "no picture"},
        {"{\"file\": \"\"}", 400, "no picture"},
        {"[]", 400, "not a JSON object"},
        {"\xff{", 400, "not a JSON object"},
        {"", 400, "not a JSON object"},
    };
    for (const auto& [body, status, part] : cases) {
        const Answer answer = post(body);
        EXPECT_EQ(answer.status, status) << part << answer.error;
        EXPECT_NE(answer.body.find(part), std::string::npos) << answer.body;
        EXPECT_TRUE(json::parse(answer.body).as_object().contains("errors"));
    }
    EXPECT_NE(post(std::string(9 << 20, 'x')).status, 200u);
    EXPECT_EQ(client.request("POST", urlOf(server->port(), "/api/v2/other/find")).status, 405u);
}

TEST_F(LookupTest, ClientsThatLeaveDoNoHarm) {
    const GLogLevelFlags before =
        g_log_set_always_fatal(GLogLevelFlags(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL));
    start();
    const std::string body = bodyOf(jpegOf(seen(painted(1))));
    const std::string request = "POST /api/v2/triggersnap/find HTTP/1.1\r\nHost: h\r\nContent-Length: " +
                                std::to_string(body.size()) + "\r\n\r\n" + body;
    for (int i = 0; i < 2; ++i) {
        RawConnection connection(server->port());
        connection.send(request);
        connection.reset();
    }
    EXPECT_EQ(post(body).status, 200u);
    RawConnection last(server->port());
    last.send(request);
    server->stop();
    g_log_set_always_fatal(before);
}

} // namespace
} // namespace kestrin::content

// A page draws discs at the inner corners of a chessboard that a real camera saw. Where the corners are is
// found in the camera layer alone.

#include "Blobs.h"
#include "Spread.h"
#include "SteppedShow.h"

#include "session/import/Import.h"
#include "session/recording/RecordedTracking.h"
#include "support/RealSequence.h"
#include "support/TemporaryFolder.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

namespace kestrin::test {

namespace {

namespace fs = std::filesystem;

constexpr int kColumns = 9, kRows = 6; ///< of inner corners
constexpr double kSpacing = 0.04;      ///< metres
constexpr int kFirst = 120, kFrames = 44;
constexpr double kDiscRadius = 6.5; ///< pixels
constexpr double kReach = 8; ///< pixels within which a disc's corner is looked for; the next is farther
constexpr std::array<double, 3> kMagenta{255, 0, 255};

/// The board lies in the plane y = 0, its rows along z.
boost::json::array cornerPoints() {
    boost::json::array points;
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column)
            points.push_back({column * kSpacing, 0, row * kSpacing});
    return points;
}

/// The board's corners in the camera layer, pixels from the top-left corner of the top-left pixel; none when
/// the board is not found.
std::vector<cv::Point2f> boardCorners(const platform::Image& camera) {
    const cv::Mat rgba(camera.pixelHeight(), camera.pixelWidth(), CV_8UC4,
                       const_cast<std::uint8_t*>(camera.pixels().data()));
    cv::Mat grey;
    cv::cvtColor(rgba, grey, cv::COLOR_RGBA2GRAY);
    std::vector<cv::Point2f> corners;
    if (!cv::findChessboardCorners(grey, {kColumns, kRows}, corners))
        return {};
    cv::cornerSubPix(grey, corners, {4, 4}, {-1, -1},
                     {cv::TermCriteria::EPS + cv::TermCriteria::COUNT, 40, 0.001});
    for (cv::Point2f& corner : corners)
        corner += {0.5F, 0.5F};
    return corners;
}

class RecordedAlignment : public testing::Test {
  protected:
    void SetUp() override {
        const fs::path board = realSequence("ar_grid");
        if (!fs::exists(board))
            GTEST_SKIP() << board << " is not there";
        session::ImportOptions options;
        options.pictures = {kFirst, kFirst + kFrames + 8};
        auto sequence = session::readSequence(session::DataSet::pictures, board, options);
        ASSERT_TRUE(std::holds_alternative<session::Sequence>(sequence));
        const auto wrong =
            session::writeRecording(std::get<session::Sequence>(sequence), "", recording(), [] {});
        ASSERT_FALSE(wrong) << wrong->text;
    }

    fs::path recording() const { return m_folder / "board.krs"; }

    StageOptions stage(const std::string& fault) const {
        StageOptions options;
        options.application = showing("align");
        options.query = {{"points", cornerPoints()}, {"fault", boost::json::parse(fault)}};
        options.width = 752;
        options.height = 480;
        options.tracking = [this](const platform::InterfaceOrientation& orientation) {
            session::RecordedOptions recorded;
            recorded.folder = recording();
            recorded.session.pacing = session::Pacing::stepped;
            recorded.session.orientation = &orientation;
            auto tracking = session::RecordedTracking::open(recorded);
            return std::get<std::shared_ptr<session::RecordedTracking>>(tracking);
        };
        return options;
    }

    /// Distances in pixels of discs to their corners, over all frames in which the board is found.
    Spread measure(const std::string& fault) {
        SteppedShow show(stage(fault));
        std::vector<double> distances;
        for (int frame = 0; frame < kFrames && show.next(); ++frame) {
            const auto corners = boardCorners(show.camera());
            m_found += corners.empty() ? 0 : 1;
            for (const platform::Point& disc : show.discs(kMagenta, kDiscRadius))
                for (const cv::Point2f& corner : corners)
                    if (const double apart = distance({corner.x, corner.y}, disc); apart < kReach)
                        distances.push_back(apart);
        }
        const Spread spread(distances);
        std::cout << m_found << " frames, " << spread << '\n';
        return spread;
    }

    int m_found = 0; ///< frames in which the board is

  private:
    TemporaryFolder m_folder;
};

TEST_F(RecordedAlignment, ContentLiesOnARealBoard) {
    const Spread spread = measure("{}");
    EXPECT_GE(m_found, 40);
    EXPECT_GE(spread.count, std::size_t(m_found) * 40);
    EXPECT_LE(spread.median, 0.7);
    EXPECT_LE(spread.p95, 1.5);
}

TEST_F(RecordedAlignment, ASlipOfOneFrameIsSeen) {
    const Spread spread = measure(R"({"slip": 1})");
    ASSERT_GE(spread.count, 400U) << "too few to judge by";
    EXPECT_GT(spread.median, 0.7);
}

} // namespace

} // namespace kestrin::test

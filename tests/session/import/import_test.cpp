#include "DataSets.h"
#include "session/Geometry.h"
#include "session/import/Trajectory.h"

#include <opencv2/core.hpp>

#include <functional>

namespace kestrin::session::test {

namespace {

struct Spot {
    double x = 0, y = 0;
};

/// The middle of what is brighter than the ground, from the top-left corner of the top-left pixel.
Spot findDot(const Nv12Buffer& picture) {
    const platform::PixelPlane luma = picture.plane(0);
    double sum = 0, x = 0, y = 0;
    for (int row = 0; row < luma.height; ++row)
        for (int column = 0; column < luma.width; ++column) {
            const double weight = std::max(luma.data[row * luma.stride + column] - 30, 0);
            sum += weight;
            x += weight * (column + 0.5);
            y += weight * (row + 0.5);
        }
    return {x / sum, y / sum};
}

/// The calibration of the small data sets, as the data sets' own documents describe it.
constexpr double kFx = 120, kFy = 118, kCx = 77.5, kCy = 61.25;

Spot throughLens(const std::array<double, 5>& k, double x, double y) {
    const double r2 = x * x + y * y, radial = 1 + k[0] * r2 + k[1] * r2 * r2 + k[4] * r2 * r2 * r2;
    return {kFx * (x * radial + 2 * k[2] * x * y + k[3] * (r2 + 2 * x * x)) + kCx,
            kFy * (y * radial + k[2] * (r2 + 2 * y * y) + 2 * k[3] * x * y) + kCy};
}

Spot throughPixels(double x, double y) {
    const double u = kFx * x, v = kFy * y, r2 = u * u + v * v, factor = 1 - 1e-5 * r2 + 3e-10 * r2 * r2;
    return {factor * u + kCx, factor * v + kCy};
}

/// A kind of folder, and how its own world and camera make a picture of a point.
struct Kind {
    const char* name;
    std::function<void(const TemporaryFolder&)> write;
    const char* picture;
    std::function<Spot(double, double)> bend; ///< from camera coordinates divided by the depth
    Eigen::Isometry3d worldFromCamera;        ///< at the first picture; x right, y down, z forward
    std::function<Vector3(Eigen::Vector3d)> kestrin;
};

std::vector<Kind> kinds() {
    const auto zUp = [](const Eigen::Vector3d& p) {
        return Vector3{float(p.x()), float(p.z()), float(-p.y())};
    };
    const auto zDown = [](const Eigen::Vector3d& p) {
        return Vector3{float(p.x()), float(-p.z()), float(p.y())};
    };
    const auto lens = [](std::array<double, 5> k) {
        return [k](double x, double y) { return throughLens(k, x, y); };
    };
    const Eigen::Translation3d place(1, 2, 3);
    const Eigen::Quaterniond ahead(0.5, -0.5, 0.5, -0.5);
    Eigen::Matrix3d side;
    side << 0, -1, 0, 1, 0, 0, 0, 0, 1;
    const Eigen::Isometry3d body = Eigen::Translation3d(1, 2, 1) * Eigen::Quaterniond(0.5, 0.5, 0.5, 0.5);
    const Eigen::Isometry3d mounted = Eigen::Translation3d(0.1, 0.2, 0.3) * Eigen::Quaterniond(side);
    const Eigen::Vector3d turn(0.3, -0.2, 0.1);
    const Eigen::Isometry3d board =
        Eigen::Translation3d(0.05, 0.02, 0.5) * Eigen::AngleAxisd(turn.norm(), turn.normalized());
    return {{"euroc", writeEuroc, "mav0/cam0/data/a.png", lens({-0.28, 0.07, 0.0002, 0.01, 0}),
             body * mounted, zUp},
            {"tum", writeTum, "rgb/a.png", lens({0.2, -0.7, 0.003, -0.001, 0.9}), place * ahead, zUp},
            {"board", writeBoard, "images/a.png", throughPixels, board.inverse(), zDown},
            {"general", writeGeneral, "images/a.png", lens({0.1, 0, 0, 0, 0}), place * ahead, zUp}};
}

TEST(Import, AWorldPointIsSeenWhereThePinholeSays) {
    for (const Kind& kind : kinds())
        for (const Spot at : {Spot{0, 0}, Spot{0.4, -0.3}, Spot{-0.45, 0.35}}) {
            SCOPED_TRACE(testing::Message() << kind.name << " " << at.x << " " << at.y);
            const TemporaryFolder folder;
            kind.write(folder);
            const Spot bent = kind.bend(at.x, at.y);
            writeDot(folder, kind.picture, bent.x, bent.y);
            ASSERT_EQ(importFolder(folder.path(), folder / "out.krs"), "");
            const auto opened = RecordingReader::open(folder / "out.krs");
            RecordingReader& reader = *std::get<0>(opened);
            ASSERT_EQ(reader.size(), 2U);
            EXPECT_EQ(reader.frame(0).frame.time, 0);
            Nv12Buffer picture(kWidth, kHeight);
            ASSERT_TRUE(reader.picture(0, picture));
            const Spot seen = findDot(picture);
            const PinholeCamera camera(reader.info().camera, reader.frame(0).frame.sensorPose, 3, {});
            const Eigen::Vector3d point = kind.worldFromCamera * Eigen::Vector3d(2 * at.x, 2 * at.y, 2);
            const platform::Point expected = camera.projectPoint(kind.kestrin(point), 3, {kWidth, kHeight});
            EXPECT_NEAR(seen.x, expected.x, 0.1);
            EXPECT_NEAR(seen.y, expected.y, 0.1);
        }
}

TEST(Import, InertialReadingsComeInTheCamerasAxes) {
    const TemporaryFolder folder;
    writeEuroc(folder);
    const auto sequence = readSequence(DataSet::euroc, folder.path(), {});
    const auto& shots = std::get<Sequence>(sequence).shots;
    ASSERT_EQ(shots.size(), 2U);
    ASSERT_EQ(shots[0].imu.size(), 1U) << "only from the first frame's moment on";
    ASSERT_EQ(shots[1].imu.size(), 1U);
    const ImuSample& sample = shots[1].imu[0];
    EXPECT_DOUBLE_EQ(sample.time, 0.025);
    // The camera's right is the body's y, its down the body's -x, its forward the body's z.
    for (const auto& [axis, rotation, force] :
         {std::tuple(0, 0.5, 5.0), std::tuple(1, 0.4, 4.0), std::tuple(2, -0.6, -6.0)}) {
        EXPECT_NEAR(sample.rotation[axis], rotation, 1e-12);
        EXPECT_NEAR(sample.acceleration[axis], force, 1e-12);
    }
}

TEST(Import, PosesAreInterpolatedAndNeverGuessed) {
    const TemporaryFolder folder;
    const double half = std::sqrt(0.5);
    folder.write("path.txt", "10 0 0 0 0 0 0 1\n"
                             "10.1 2 0 4 0 0 " +
                                 std::to_string(-half) + " " + std::to_string(-half) +
                                 "\n"
                                 "1.06e1 3 0 4 0 0 1 0\n");
    const Trajectory path = Trajectory::readTum(folder / "path.txt");
    const auto pose = path.at(10'025'000'000);
    ASSERT_TRUE(pose);
    EXPECT_TRUE(pose->translation().isApprox(Eigen::Vector3d(0.5, 0, 1), 1e-12));
    const Eigen::AngleAxisd turn(pose->linear());
    EXPECT_NEAR(turn.angle() * turn.axis().z(), M_PI / 8, 1e-6) << "a quarter of the way to a quarter turn";
    EXPECT_TRUE(path.at(10'000'000'000) && path.at(10'600'000'000)) << "both ends belong to it";
    EXPECT_FALSE(path.at(9'999'999'999));
    EXPECT_FALSE(path.at(10'600'000'001));
    EXPECT_FALSE(path.at(10'300'000'000)) << "a hole of half a second";
}

/// One file of a good data set becomes this, and the import says that.
struct Fault {
    void (*write)(const TemporaryFolder&);
    std::string file, text, expected; ///< the file is removed where there is no text
};

std::string yamlWith(const std::string& old, const std::string& now) {
    std::string text = kCameraYaml;
    return text.replace(text.find(old), old.size(), now);
}

TEST(Import, FaultsNameTheFileAndTheLine) {
    const std::string yaml = "mav0/cam0/sensor.yaml", json = "intrinsics.json";
    const std::string truth = "mav0/state_groundtruth_estimate0/data.csv";
    const std::vector<Fault> faults{
        {writeEuroc, yaml, "T_BS: [1, 2\nx: {", "sensor.yaml:2: "},
        {writeEuroc, yaml, yamlWith("118.0", "nan"), "sensor.yaml:11: intrinsics: expected numbers"},
        {writeEuroc, yaml, yamlWith("1.0, 0.0, 0.0, 0.2", "2.0, 0.0, 0.0, 0.2"), "T_BS: expected a rotation"},
        {writeEuroc, yaml, std::string(900'000, '['), "sensor.yaml:1: "},
        {writeEuroc, "mav0/cam0/data.csv", "7,a.png\n7,b.png\n", "data.csv:2: the time does not go up"},
        {writeEuroc, truth, "", "has no ground truth"},
        {writeEuroc, truth, "1,1e9,0,0,1,0,0,0", "data.csv:1: expected a smaller number, not '1e9'"},
        {writeEuroc, "mav0/cam0/data/b.png", "no picture", "b.png: is no picture, or a broken one"},
        {writeTum, "camera.txt", "", "which camera?"},
        {writeTum, "rgb.txt", "soon rgb/a.png", "rgb.txt:1: expected a number, not 'soon'"},
        {writeBoard, "K.txt", "1 2\n", "K.txt:1: expected 3 columns"},
        {writeBoard, "poses.txt", "0 0 0 0 0 1\n", "images: has 2 pictures, but poses.txt has 1 poses"},
        {writeGeneral, json, R"({"width": 0})", "intrinsics.json: width: expected a number from 1 to 8192"},
        {writeGeneral, json, R"({"width": 64, "height": 64, "fx": 9, "fy": 9, "cx": 1, "cy": 1})",
         "images/a.png: is 160x120, expected 64x64"}};
    for (const auto& [write, file, text, expected] : faults) {
        const TemporaryFolder folder;
        write(folder);
        std::filesystem::remove(folder / file);
        if (!text.empty())
            folder.write(file, text);
        const std::string said = importFolder(folder.path(), folder / "out.krs");
        EXPECT_NE(said.find(expected), std::string::npos) << file << ": " << said;
        EXPECT_TRUE(said.starts_with(folder.path().string())) << said;
        EXPECT_EQ(said.find('\n'), std::string::npos) << said;
    }
}

} // namespace

} // namespace kestrin::session::test

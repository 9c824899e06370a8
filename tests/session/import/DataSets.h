#pragma once

#include "session/import/Import.h"
#include "session/import/Picture.h"
#include "session/recording/RecordingReader.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestrin::session::test {

using kestrin::test::TemporaryFolder;

/// Small data sets that are right in every way: one camera 160x120 that sees a dot, two pictures.
constexpr int kWidth = 160, kHeight = 120;

/// A round dot, brightest at a place that counts from the centre of the top-left pixel.
inline cv::Mat dotPicture(double x, double y) {
    cv::Mat picture(kHeight, kWidth, CV_8UC3);
    for (int row = 0; row < kHeight; ++row)
        for (int column = 0; column < kWidth; ++column) {
            const double r2 = (column - x) * (column - x) + (row - y) * (row - y);
            const auto value = std::uint8_t(std::lround(20 + 200 * std::exp(-r2 / 8)));
            picture.at<cv::Vec3b>(row, column) = {value, value, value};
        }
    return picture;
}

inline void writeDot(const TemporaryFolder& folder, const std::string& name, double x = 80, double y = 60) {
    std::filesystem::create_directories((folder / name).parent_path());
    writePicture(folder / name, dotPicture(x, y));
}

constexpr const char* kCameraYaml = "# a comment\n"
                                    "T_BS:\n"
                                    "  cols: 4\n"
                                    "  rows: 4\n"
                                    "  data: [0.0, -1.0, 0.0, 0.1,\n"
                                    "         1.0, 0.0, 0.0, 0.2,\n"
                                    "         0.0, 0.0, 1.0, 0.3,\n"
                                    "         0.0, 0.0, 0.0, 1.0]\n"
                                    "rate_hz: 20\n"
                                    "resolution: [160, 120]\n"
                                    "intrinsics: [120.0, 118.0, 77.5, 61.25] #fu, fv, cu, cv\n"
                                    "distortion_model: radial-tangential\n"
                                    "distortion_coefficients: [-0.28, 0.07, 0.0002, 0.01]\n";

/// Pictures at 1.00 s and 1.05 s; the body stands still but for its height, which is 1 m at 1 s and rises by
/// 1 m/s, and looks along the world's x.
inline void writeEuroc(const TemporaryFolder& folder) {
    folder.write("mav0/cam0/sensor.yaml", kCameraYaml);
    folder.write("mav0/cam0/data.csv",
                 "#timestamp [ns],filename\r\n1000000000,a.png\r\n1050000000,b.png\r\n");
    folder.write("mav0/state_groundtruth_estimate0/data.csv",
                 "#timestamp,p,q,v,b\n"
                 "990000000,1,2,0.99,0.5,0.5,0.5,0.5,0,0,0,0,0,0,0,0,0\n"
                 "1010000000,1,2,1.01,-0.5,-0.5,-0.5,-0.5,0,0,0,0,0,0,0,0,0\n"
                 "1090000000,1,2,1.09,0.5,0.5,0.5,0.5,0,0,0,0,0,0,0,0,0\n");
    folder.write("mav0/imu0/data.csv", "#timestamp,w,a\n"
                                       "995000000,9,9,9,9,9,9\n"
                                       "1000000000,0.1,0.2,0.3,1,2,3\n"
                                       "1025000000,0.4,0.5,0.6,4,5,6\n"
                                       "1060000000,9,9,9,9,9,9\n");
    writeDot(folder, "mav0/cam0/data/a.png");
    writeDot(folder, "mav0/cam0/data/b.png");
}

inline void writeTum(const TemporaryFolder& folder) {
    folder.write("rgb.txt", "# color images\n1.000000 rgb/a.png\n1.033333 rgb/b.png\n");
    folder.write("groundtruth.txt", "# timestamp tx ty tz qx qy qz qw\n"
                                    "0.99 1 2 3 -0.5 0.5 -0.5 0.5\n"
                                    "1.09 1 2 3 -0.5 0.5 -0.5 0.5\n");
    folder.write("camera.txt", "120 118 77.5 61.25 0.2 -0.7 0.003 -0.001 0.9\n");
    writeDot(folder, "rgb/a.png");
    writeDot(folder, "rgb/b.png");
}

inline void writeBoard(const TemporaryFolder& folder) {
    folder.write("K.txt", "120 0 77.5\n0 118 61.25\n0 0 1\n");
    folder.write("D.txt", "-1e-5 3e-10\n");
    folder.write("poses.txt", "0.3 -0.2 0.1 0.05 0.02 0.5\n0.3 -0.2 0.1 0.05 0.02 0.6\n");
    writeDot(folder, "images/a.png");
    writeDot(folder, "images/b.png");
}

inline void writeGeneral(const TemporaryFolder& folder) {
    folder.write("intrinsics.json", R"({"width": 160, "height": 120, "fx": 120, "fy": 118, "cx": 77.5,
 "cy": 61.25, "distortion": [0.1, 0, 0, 0, 0], "pixels": "centre", "camera": "y-down", "world": "z-up"})");
    folder.write("poses.txt", "5.0 1 2 3 -0.5 0.5 -0.5 0.5\n5.5 1 2 3.5 -0.5 0.5 -0.5 0.5\n");
    writeDot(folder, "images/a.png");
    writeDot(folder, "images/b.png");
}

/// Imports a folder of a kind that is told from its files; the error's line, or nothing.
inline std::string importFolder(const std::filesystem::path& folder, const std::filesystem::path& recording) {
    const auto kind = dataSetIn(folder);
    if (!kind)
        return "no kind of data set";
    const auto read = readSequence(*kind, folder, {});
    if (const auto* error = std::get_if<RecordingError>(&read))
        return error->text;
    const auto error = writeRecording(std::get<Sequence>(read), "a test", recording, [] {});
    return error ? error->text : "";
}

} // namespace kestrin::session::test

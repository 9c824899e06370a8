#include "DataSets.h"

#include <fstream>

namespace kestrin::session::test {

namespace {

using Writer = void (*)(const TemporaryFolder&);

/// One file of a good data set becomes this, and the import says that.
struct Case {
    Writer write;
    std::string file;
    std::string text;     ///< of the file; or one of the two below
    std::string expected; ///< the end of the message after the folder's name
};

const std::string kGone = "(gone)", kCutShort = "(cut short)";

std::string yamlWith(const std::string& old, const std::string& now) {
    std::string text = kCameraYaml;
    return text.replace(text.find(old), old.size(), now);
}

const std::string kCamera = "mav0/cam0/sensor.yaml", kPictures = "mav0/cam0/data.csv";
const std::string kTruth = "mav0/state_groundtruth_estimate0/data.csv", kImu = "mav0/imu0/data.csv";
const std::string kMat = "poses.txt", kJson = "intrinsics.json";

std::vector<Case> cases() {
    return {
        {writeEuroc, kCamera, kGone, "cam0/sensor.yaml: cannot be read"},
        {writeEuroc, kCamera, "T_BS: [1, 2\nx: {", "sensor.yaml:2: "},
        {writeEuroc, kCamera, yamlWith("160, 120", "160, -1"), "sensor.yaml: resolution: expected 1 to 8192"},
        {writeEuroc, kCamera, yamlWith("118.0", "nan"), "sensor.yaml:11: intrinsics: expected numbers"},
        {writeEuroc, kCamera, yamlWith("120.0,", "0,"), "sensor.yaml: intrinsics: expected positive focal"},
        {writeEuroc, kCamera, yamlWith("0.1,\n", "0.1\n"), "sensor.yaml:5: T_BS: expected numbers"},
        {writeEuroc, kCamera, yamlWith("1.0, 0.0, 0.0, 0.2", "2.0, 0.0, 0.0, 0.2"),
         "T_BS: expected a rotation"},
        {writeEuroc, kCamera, yamlWith("radial-tangential", "fisheye"), "sensor.yaml:12: distortion_model"},
        {writeEuroc, kCamera, std::string(900'000, '['), "sensor.yaml:1: "},
        {writeEuroc, kCamera, "just words", "sensor.yaml: T_BS: missing"},
        {writeEuroc, kPictures, "", "cam0/data.csv: is empty"},
        {writeEuroc, kPictures, "1000000000", "data.csv:1: expected 2 columns, found 1"},
        {writeEuroc, kPictures, "# x\n1.5,a.png\n", "data.csv:2: expected a time in nanoseconds, not '1.5'"},
        {writeEuroc, kPictures, "7,a.png\n7,b.png\n", "data.csv:2: the time does not go up"},
        {writeEuroc, kPictures, "7,a.png\n", "none of its 1 pictures lies within the ground truth"},
        {writeEuroc, kTruth, kGone, "has no ground truth"},
        {writeEuroc, kTruth, "1,0,0,0,1,0,0,0\n2,0,0,0,1,1,0,0", "data.csv:2: the rotation is no unit"},
        {writeEuroc, kTruth, "1,0,0,inf,1,0,0,0", "data.csv:1: expected a number, not 'inf'"},
        {writeEuroc, kTruth, "1,1e9,0,0,1,0,0,0", "data.csv:1: expected a smaller number, not '1e9'"},
        {writeEuroc, kImu, "1,2,3,4,5,6", "imu0/data.csv:1: expected 7 columns, found 6"},
        {writeEuroc, "mav0/cam0/data/b.png", kGone, "cam0/data/b.png: cannot be read"},
        {writeEuroc, "mav0/cam0/data/b.png", "no picture", "b.png: is no picture, or a broken one"},
        {writeTum, "rgb.txt", "soon rgb/a.png", "rgb.txt:1: expected a number, not 'soon'"},
        {writeTum, "groundtruth.txt", kGone, "groundtruth.txt: cannot be read"},
        {writeTum, "camera.txt", kGone, "which camera?"},
        {writeTum, "camera.txt", "500 500 320 240 0.1", "camera.txt:1: expected fx fy cx cy"},
        {writeBoard, "K.txt", "1 2\n", "K.txt:1: expected 3 columns"},
        {writeBoard, "K.txt", "420 9 300\n0 420 200\n0 0 1", "K.txt:1: expected fx 0 cx"},
        {writeBoard, "D.txt", "0.1", "D.txt:1: expected 2 columns"},
        {writeBoard, "images/b.png", kCutShort, "images/b.png: is no picture"},
        {writeBoard, kMat, "0 0 0 0 0 1\n", "images: has 2 pictures, but poses.txt has 1 poses"},
        {writeBoard, kMat, "0 0 0 0 0 1\n0 0 0 0 x 1\n", "poses.txt:2: expected a number, not 'x'"},
        {writeGeneral, kJson, "{\n\"width\": }", "intrinsics.json: not JSON at line 2"},
        {writeGeneral, kJson, R"({"width": 0})", "intrinsics.json: width: expected a number from 1 to 8192"},
        {writeGeneral, kJson,
         R"({"width": 9, "height": 9, "fx": 1, "fy": 1, "cx": 1, "cy": 1, "world": "up"})",
         "intrinsics.json: world: expected \"y-up\" or \"z-up\""},
        {writeGeneral, kJson, R"({"width": 64, "height": 64, "fx": 9, "fy": 9, "cx": 1, "cy": 1})",
         "images/a.png: is 160x120, expected 64x64"}};
}

TEST(ImportErrors, NameTheFileAndTheLine) {
    for (const Case& wrong : cases()) {
        const TemporaryFolder folder;
        wrong.write(folder);
        const auto file = folder / wrong.file;
        if (wrong.text == kGone)
            std::filesystem::remove(file);
        else if (wrong.text == kCutShort)
            std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
        else
            folder.write(wrong.file, wrong.text);
        const std::string said = importFolder(folder.path(), folder / "out.krs");
        EXPECT_NE(said.find(wrong.expected), std::string::npos) << wrong.file << ": " << said;
        EXPECT_TRUE(said.starts_with(folder.path().string())) << said;
        EXPECT_EQ(said.find('\n'), std::string::npos) << said;
    }
}

} // namespace

} // namespace kestrin::session::test

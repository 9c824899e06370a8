#include "linux/storage/PhotoFolder.h"
#include "linux/storage/PixbufCodec.h"
#include "support/ExifDate.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <ctime>
#include <iterator>
#include <sys/resource.h>
#include <vector>

namespace kestrin::gtk::test {

namespace {

using std::filesystem::path;
using std::filesystem::recursive_directory_iterator;

std::vector<std::uint8_t> noisyJpeg(int side) {
    std::vector<std::uint8_t> pixels(std::size_t(side) * std::size_t(side) * 4);
    for (std::uint32_t i = 0, noise = 1; i < pixels.size(); ++i)
        pixels[i] = std::uint8_t((noise = noise * 1664525 + 1013904223) >> 24);
    return PixbufCodec().encodeJpeg({side, side, pixels}, 1);
}

std::string bytesOf(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::ptrdiff_t filesIn(const path& folder) { return std::distance(recursive_directory_iterator(folder), {}); }

struct PhotoFolderTest : testing::Test {
    const kestrin::test::TemporaryFolder around;
    const path folder = around / "Pictures/Kestrin";
    const PhotoFolder photos{folder};
    std::tm day{};
    std::chrono::system_clock::time_point moment;

    PhotoFolderTest() {
        day.tm_year = 126, day.tm_mon = 2, day.tm_mday = 9;
        day.tm_hour = 14, day.tm_min = 5, day.tm_sec = 59, day.tm_isdst = -1;
        moment = std::chrono::system_clock::from_time_t(std::mktime(&day));
    }
};

} // namespace

TEST_F(PhotoFolderTest, TwoPhotosOfOneSecondAreTwoDatedFiles) {
    EXPECT_EQ(photos.add(noisyJpeg(16), moment), std::nullopt);
    EXPECT_EQ(photos.add(noisyJpeg(24), moment), std::nullopt);
    EXPECT_EQ(filesIn(folder), 2);
    int side = 16;
    for (const char* name : {"Kestrin 2026-03-09 14.05.59.jpg", "Kestrin 2026-03-09 14.05.59 (2).jpg"}) {
        const std::string bytes = bytesOf(folder / name);
        const auto image =
            PixbufCodec().decode({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        EXPECT_EQ(image.pixelWidth(), side) << name;
        EXPECT_EQ(kestrin::test::exifDateIn(folder / name), "2026:03:09 14:05:59") << name;
        side += 8;
    }
}

TEST_F(PhotoFolderTest, AFailureSaysWhyAndLeavesNothing) {
    EXPECT_EQ(photos.add(noisyJpeg(16), moment), std::nullopt);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{4000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto full = photos.add(noisyJpeg(200), moment);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_TRUE(full && !full->empty());
    EXPECT_EQ(filesIn(folder), 1);

    around.write("file", "");
    EXPECT_TRUE(PhotoFolder(around / "file/Kestrin").add(noisyJpeg(16), moment));
    EXPECT_TRUE(PhotoFolder("/proc/Kestrin").add(noisyJpeg(16), moment)) << "where nothing can be written";
}

} // namespace kestrin::gtk::test

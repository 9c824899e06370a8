#include "linux/storage/PhotoFolder.h"
#include "linux/storage/PixbufCodec.h"
#include "support/ExifDate.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ctime>
#include <iterator>
#include <vector>

namespace kestrin::gtk::test {

TEST(PhotoFolder, TwoPhotosOfOneSecondAreTwoDatedFiles) {
    const kestrin::test::TemporaryFolder around;
    const PhotoFolder photos(around / "Pictures/Kestrin");
    std::tm day{};
    day.tm_year = 126, day.tm_mon = 2, day.tm_mday = 9;
    day.tm_hour = 14, day.tm_min = 5, day.tm_sec = 59, day.tm_isdst = -1;
    const auto moment = std::chrono::system_clock::from_time_t(std::mktime(&day));
    for (const auto& [side, name] :
         {std::pair(16, "Kestrin 2026-03-09 14.05.59.jpg"), {24, "Kestrin 2026-03-09 14.05.59 (2).jpg"}}) {
        const std::vector<std::uint8_t> grey(std::size_t(side * side * 4), 128);
        EXPECT_EQ(photos.add(PixbufCodec().encodeJpeg({side, side, grey}, 1), moment), std::nullopt);
        const auto file = around / "Pictures/Kestrin" / name;
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
        const auto image =
            PixbufCodec().decode({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        EXPECT_EQ(image.pixelWidth(), side) << name;
        EXPECT_EQ(kestrin::test::exifDateIn(file), "2026:03:09 14:05:59") << name;
    }
}

} // namespace kestrin::gtk::test

#include "tracking/CompressorUtil.h"
#include "support/FakePlatform.h"

#include <bit>
#include <limits>

namespace kestrin {

using namespace platform;

namespace {

Matrix moved() {
    Matrix matrix = Matrix::identity();
    matrix[3] = {1, 2, 3, 1};
    return matrix;
}

std::uint32_t bitsOf(float value) { return std::bit_cast<std::uint32_t>(value); }

} // namespace

TEST(CompressorUtil, WritesTheKnownTexts) {
    const Matrix identity = Matrix::identity();
    EXPECT_EQ(CompressorUtil::compressMatrixToBitString(identity),
              "AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAAAAAAAAAAAAAAAAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressMatrixToBitString(moved()),
              "AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAACAPwAAAEAAAEBAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressMatrixAsPoseToBitString(identity),
              "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressMatrixAsPoseToBitString(moved()),
              "AACAPwAAAEAAAEBAAAAAAAAAAAAAAAAAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressMatrixAsPoseTsToBitString(identity, 1.5F),
              "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPwAAwD8=");
    EXPECT_EQ(CompressorUtil::compressFloatToBitString(1), "AACAPw==");
    EXPECT_EQ(CompressorUtil::compressFloatToBitString(0.5F), "AAAAPw==");
    EXPECT_EQ(CompressorUtil::compressVector3ToBitString({1, 2, 3}), "AACAPwAAAEAAAEBA");
    EXPECT_EQ(CompressorUtil::compressQuaternionToBitString({0, 0, 0, 1}), "AAAAAAAAAAAAAAAAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressVector3ToBitString({1, 2, 3}, {0, 0, 0, 1}),
              "AACAPwAAAEAAAEBAAAAAAAAAAAAAAAAAAACAPw==");
}

TEST(CompressorUtil, WritesArraysTightlyAndWide) {
    const Vector3 vectors[] = {{1, 2, 3}, {4, 5, 6}};
    const std::int16_t shorts[] = {0, 1, -1};
    const std::int32_t integers[] = {7, -2};
    EXPECT_EQ(CompressorUtil::compressVector3ArrayToBitString(vectors, 2),
              "AACAPwAAAEAAAEBAAACAQAAAoEAAAMBA");
    EXPECT_EQ(CompressorUtil::compressShortArrayToBitString(shorts, 3), "AAAAAAEAAAD/////");
    EXPECT_EQ(CompressorUtil::compressIntegerArrayToBitString(integers, 2), "BwAAAP7///8=");
    for (const std::int32_t none : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_TRUE(CompressorUtil::compressVector3Array(nullptr, none).empty());
        EXPECT_EQ(CompressorUtil::compressShortArrayToBitString(shorts, none), "");
        EXPECT_EQ(CompressorUtil::compressIntegerArrayToBitString(integers, none), "");
    }
}

TEST(CompressorUtil, PlacesTheFieldsOfATimedPose) {
    Matrix pose; // a half turn about y, at a place, with a fourth row that must not be read
    pose[0] = {-1, 0, 0, 9};
    pose[1] = {0, 1, 0, 9};
    pose[2] = {0, 0, -1, 9};
    pose[3] = {1, 2, 3, 9};
    const auto block = CompressorUtil::compressMatrixAsPoseTs(pose, 8);
    const auto expected = CompressorUtil::compressVector3({1, 2, 3}, {0, 1, 0, 0}, 8);
    EXPECT_EQ(block, expected);
    EXPECT_EQ(block[31], 0x41); // 8.0 is 41 00 00 00, lowest byte first
    EXPECT_EQ(block[28], 0x00);
}

TEST(CompressorUtil, PassesEveryFloatBitForBit) {
    using Limits = std::numeric_limits<float>;
    Matrix odd;
    odd[0] = {Limits::quiet_NaN(), -Limits::quiet_NaN(), std::bit_cast<float>(0x7FC12345U), -0.0F};
    odd[1] = {Limits::infinity(), -Limits::infinity(), Limits::denorm_min(), -Limits::denorm_min()};
    odd[2] = {Limits::max(), Limits::lowest(), Limits::min(), Limits::epsilon()};
    odd[3] = {std::bit_cast<float>(0x007FFFFFU), std::bit_cast<float>(0x80000001U), 1, 2};
    const std::string text = CompressorUtil::compressMatrixToBitString(odd);
    const Matrix back = CompressorUtil::decompressMatrixFromBitString(text);
    const auto sent = CompressorUtil::compressMatrixToArray(odd);
    const auto received = CompressorUtil::compressMatrixToArray(back);
    ASSERT_EQ(sent.size(), 16U);
    for (std::size_t i = 0; i < sent.size(); ++i)
        EXPECT_EQ(bitsOf(received[i]), bitsOf(sent[i])) << i;
    EXPECT_EQ(CompressorUtil::compressMatrixAsPoseToBitString(odd).size(), 40U);
}

TEST(CompressorUtil, DecodesOnlyWhatHoldsAMatrix) {
    const auto block = CompressorUtil::compressMatrix(moved());
    std::vector<std::uint8_t> longer(block.begin(), block.end());
    longer.push_back(7);
    EXPECT_EQ(CompressorUtil::decompressMatrix(longer), moved());
    EXPECT_EQ(CompressorUtil::decompressMatrix(std::span(block).first(63)), Matrix());
    EXPECT_EQ(CompressorUtil::decompressMatrixFromArray(CompressorUtil::compressMatrixToArray(moved())),
              moved());
    EXPECT_EQ(CompressorUtil::decompressMatrixFromArray({}), Matrix());
    for (const char* bad : {"", "AACAPw==", "not base64 at all", "====", "AACAPwAAAAAA\nAAAA"})
        EXPECT_EQ(CompressorUtil::decompressMatrixFromBitString(bad), Matrix()) << bad;
}

struct CompressorPrinting : test::PlatformTest {};

TEST_F(CompressorPrinting, PrintsAColumnARow) {
    CompressorUtil::printMatrix(moved());
    EXPECT_EQ(takeLog(), std::vector<std::string>{"Matrix = [\n 1.0 0.0 0.0 0.0 \n 0.0 1.0 0.0 0.0 \n "
                                                  "0.0 0.0 1.0 0.0 \n 1.0 2.0 3.0 1.0 \n]"});
}

TEST_F(CompressorPrinting, PrintsBitsLowestFirst) {
    CompressorUtil::printMatrixBit(Matrix::identity());
    const auto lines = takeLog();
    ASSERT_EQ(lines.size(), 64U);
    EXPECT_EQ(lines[0], "[0] = (00000000)");
    EXPECT_EQ(lines[2], "[2] = (00000001)");
    EXPECT_EQ(lines[3], "[3] = (11111100)");
    EXPECT_EQ(lines[63], "[63] = (11111100)");
}

} // namespace kestrin

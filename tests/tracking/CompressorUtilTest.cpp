#include "tracking/CompressorUtil.h"

#include <gtest/gtest.h>

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

} // namespace

TEST(CompressorUtil, WritesTheKnownTexts) {
    EXPECT_EQ(CompressorUtil::compressMatrixToBitString(moved()),
              "AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAACAPwAAAEAAAEBAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressMatrixAsPoseToBitString(moved()),
              "AACAPwAAAEAAAEBAAAAAAAAAAAAAAAAAAACAPw==");
    EXPECT_EQ(CompressorUtil::compressMatrixAsPoseTsToBitString(Matrix::identity(), 1.5F),
              "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPwAAwD8=");
    EXPECT_EQ(CompressorUtil::compressFloatToBitString(0.5F), "AAAAPw==");
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
        EXPECT_EQ(CompressorUtil::compressIntegerArrayToBitString(integers, none), "");
    }
}

TEST(CompressorUtil, PassesEveryFloatBitForBit) {
    using Limits = std::numeric_limits<float>;
    Matrix odd;
    odd[0] = {Limits::quiet_NaN(), -Limits::quiet_NaN(), std::bit_cast<float>(0x7FC12345U), -0.0F};
    odd[1] = {Limits::infinity(), -Limits::infinity(), Limits::denorm_min(), Limits::max()};
    const auto text = CompressorUtil::compressMatrixToBitString(odd);
    const auto back = CompressorUtil::decompressMatrixFromBitString(text);
    EXPECT_EQ(CompressorUtil::compressMatrixToBitString(back), text);
}

} // namespace kestrin

#include "tracking/CompressorUtil.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace kestrin {

// The texts that pages read are tested where they are sent.
TEST(CompressorUtil, WritesWholeNumbersUpToTheirCount) {
    const std::int32_t integers[] = {7, -2};
    EXPECT_EQ(CompressorUtil::compressIntegerArrayToBitString(integers, 2), "BwAAAP7///8=");
    for (const std::int32_t none : {0, -1, std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(CompressorUtil::compressIntegerArrayToBitString(integers, none), "");
}

TEST(CompressorUtil, PassesEveryFloatBitForBit) {
    using Limits = std::numeric_limits<float>;
    platform::Matrix odd;
    odd[0] = {Limits::quiet_NaN(), -Limits::quiet_NaN(), std::bit_cast<float>(0x7FC12345U), -0.0F};
    odd[1] = {Limits::infinity(), -Limits::infinity(), Limits::denorm_min(), Limits::max()};
    const auto text = CompressorUtil::compressMatrixToBitString(odd);
    const auto back = CompressorUtil::decompressMatrixFromBitString(text);
    EXPECT_EQ(CompressorUtil::compressMatrixToBitString(back), text);
}

} // namespace kestrin

#include "services/util/Format.h"
#include "services/util/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <locale>

using namespace kestrin;

TEST(Format, PrintsTheSameInEveryLocale) {
    struct CommaPoint : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaPoint));
    EXPECT_EQ(format("%f %f %f", 1234567, 0.1F, -1e-9), "1234567.000000 0.100000 -0.000000");
    EXPECT_EQ(format("%.1f %.1f %.0f", 0.25, -12.36, 2.5), "0.2 -12.4 2");
    EXPECT_EQ(format("%f", std::nan("")), "nan");
    EXPECT_EQ(format("%i %d %i %c%c", -7, true, std::int64_t(1) << 40, 'x', 121), "-7 1 1099511627776 xy");
    EXPECT_EQ(format("%#x %#x", 255, std::uintptr_t(-1)), "0xff 0xffffffffffffffff");
    EXPECT_EQ(format("%@ %@ %@", static_cast<const char*>(nullptr), std::string_view("\0", 1), "%@ %f"),
              std::string("(null) \0 %@ %f", 14));
    std::locale::global(before);
    EXPECT_EQ(saturatingCast<std::int32_t>(2147483648.0), 2147483647);
    EXPECT_EQ(saturatingCast<std::uint8_t>(-1), 0);
    EXPECT_EQ(saturatingCast<std::int32_t>(std::nan("")), 0);
}

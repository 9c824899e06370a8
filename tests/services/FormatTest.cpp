#include "services/util/Format.h"
#include "services/util/Numbers.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>

using kestrin::format;
using kestrin::saturatingCast;

TEST(Format, TakesEveryKindOfText) {
    const std::string text = "b";
    const char* const missing = nullptr;
    EXPECT_EQ(format("%@|%@|%@|%@", "a", text, std::string_view("c"), std::optional<std::string>("d")),
              "a|b|c|d");
    EXPECT_EQ(format("%@ %@ %@ %@", missing, std::optional<std::string>(), std::optional<std::string_view>(),
                     std::nullopt),
              "(null) (null) (null) (null)");
    EXPECT_EQ(format("%@", std::string_view("x\0y", 3)), std::string_view("x\0y", 3));
    EXPECT_EQ(format("%@%@", "%@ %f", ""), "%@ %f");
}

TEST(Format, PrintsNumbers) {
    EXPECT_EQ(format("%f %f %f", 750, 1334.0F, 0.1F), "750.000000 1334.000000 0.100000");
    EXPECT_EQ(format("%f %f %f", -0.0, -1e-9, 2.0000005), "-0.000000 -0.000000 2.000001");
    EXPECT_EQ(format("%.1f %.1f %.0f", 0.25, -12.36, 2.5), "0.2 -12.4 2");
    EXPECT_EQ(format("%f", 1e22), "10000000000000000000000.000000");
    EXPECT_EQ(format("%f", -std::numeric_limits<double>::max()).size(), 1U + 309 + 7);
    EXPECT_EQ(format("%f %f", std::nan(""), -std::numeric_limits<double>::infinity()), "nan -inf");
    EXPECT_EQ(format("%i %d %i %c%c", -7, true, std::int64_t(1) << 40, 'x', 121), "-7 1 1099511627776 xy");
    EXPECT_EQ(format("%i %d %i", 7.9, -7.9, 1e300), "7 -7 9223372036854775807");
    EXPECT_EQ(format("100%% of %i", 3), "100% of 3");
}

TEST(Format, IsTheSameInEveryLocale) {
    struct CommaPoint : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaPoint));
    const std::string formerC = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "nl_NL.UTF-8"})
        if (std::setlocale(LC_ALL, name))
            break;
    EXPECT_EQ(format("%f %.1f %i", 1234567.5, 0.5, 1234567), "1234567.500000 0.5 1234567");
    std::setlocale(LC_ALL, formerC.c_str());
    std::locale::global(before);
}

TEST(SaturatingCast, StaysWithinTheType) {
    EXPECT_EQ(saturatingCast<std::int32_t>(7.9), 7);
    EXPECT_EQ(saturatingCast<std::int32_t>(-7.9), -7);
    EXPECT_EQ(saturatingCast<std::int32_t>(2147483647.0), 2147483647);
    EXPECT_EQ(saturatingCast<std::int32_t>(2147483648.0), 2147483647);
    EXPECT_EQ(saturatingCast<std::int32_t>(-1e20), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(saturatingCast<std::int64_t>(9.3e18), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(saturatingCast<std::int64_t>(std::numeric_limits<double>::infinity()),
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(saturatingCast<std::uint8_t>(300), 255);
    EXPECT_EQ(saturatingCast<std::uint8_t>(-1), 0);
    EXPECT_EQ(saturatingCast<std::int32_t>(std::nan("")), 0);
}

using LogTest = kestrin::test::PlatformTest;

TEST_F(LogTest, WritesTheLine) {
    kestrin::log("a line");
    kestrin::log("size %@ %i", "x", 2);
    EXPECT_THAT(takeLog(), testing::ElementsAre("a line", "size x 2"));
}

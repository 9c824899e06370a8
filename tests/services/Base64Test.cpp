#include "services/util/Base64.h"

#include <gtest/gtest.h>

using namespace kestrin;

TEST(Base64, IsStandardAndStrict) {
    using namespace std::string_view_literals;
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foob", "Zm9vYg=="}, {"\xFB\xFF\xFE", "+//+"}};
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(base64Encode(bytes), text);
        EXPECT_EQ(base64Decode(text), bytes);
    }
    for (const std::string_view bad : {"Zg"sv, "Zm9vY"sv, "Zm9v\n"sv, "Zm9v Zm9v"sv, "===="sv, "Z==="sv,
                                       "Zg==Zm9v"sv, "Zm9-"sv, "Zm9\0"sv})
        EXPECT_EQ(base64Decode(bad), std::nullopt) << bad;
}

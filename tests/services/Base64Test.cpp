#include "services/util/Base64.h"

#include <gtest/gtest.h>

#include <vector>

using kestrin::base64Decode;
using kestrin::base64Encode;

TEST(Base64, EncodesAsTheStandardSays) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foob", "Zm9vYg=="}, {"\xFB\xFF\xFE", "+//+"}};
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(base64Encode(bytes), text);
        EXPECT_EQ(base64Decode(text), bytes);
    }
}

TEST(Base64, RefusesWhatIsNotStrict) {
    using namespace std::string_view_literals;
    for (const std::string_view text :
         {"Zg"sv, "Zg="sv, "Zm9vY"sv, "Zm9v\n"sv, "Zm9v Zm9v"sv, "===="sv, "Z==="sv, "Zg==Zm9v"sv, "Zm=v"sv,
          "Zm9v===="sv, "Z=g="sv, "=Zm9"sv, "Zm9-"sv, "Zm9_"sv, "Zm9\0"sv, "Zm9\xFF"sv, "{}  "sv})
        EXPECT_EQ(base64Decode(text), std::nullopt) << text;
}

TEST(Base64, BreaksLinesBetweenAndNotAfter) {
    const auto lines = [](std::size_t bytes) {
        return kestrin::base64EncodeInLines(std::vector<std::uint8_t>(bytes));
    };
    const std::string line(64, 'A');
    EXPECT_EQ(lines(0), "");
    EXPECT_EQ(lines(48), line);
    EXPECT_EQ(lines(49), line + "\r\nAA==");
    EXPECT_EQ(lines(96), line + "\r\n" + line);
}

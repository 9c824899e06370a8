#include "services/util/Base64.h"

#include <gtest/gtest.h>

#include <random>

using kestrin::base64Decode;
using kestrin::base64Encode;

TEST(Base64, EncodesAsTheStandardSays) {
    const std::pair<std::string_view, std::string_view> cases[] = {{"", ""},
                                                                   {"f", "Zg=="},
                                                                   {"fo", "Zm8="},
                                                                   {"foo", "Zm9v"},
                                                                   {"foob", "Zm9vYg=="},
                                                                   {"fooba", "Zm9vYmE="},
                                                                   {"foobar", "Zm9vYmFy"},
                                                                   {"\xFB\xFF\xFE", "+//+"}};
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(base64Encode(bytes), text);
        EXPECT_EQ(base64Decode(text), bytes);
    }
}

TEST(Base64, BringsBackAnyBytes) {
    std::mt19937 random(7);
    for (std::size_t length = 0; length < 200; ++length) {
        std::string bytes(length, '\0');
        for (char& c : bytes)
            c = char(random());
        EXPECT_EQ(base64Decode(base64Encode(bytes)), bytes);
    }
}

TEST(Base64, RefusesWhatIsNotStrict) {
    using namespace std::string_view_literals;
    for (const std::string_view text : {"Zg"sv,        "Zg="sv,
                                        "Zm9vY"sv,     "Zm9v\n"sv,
                                        "Zm9v Zm9v"sv, "Zm9v\nZm9v\n\n\n"sv,
                                        "===="sv,      "Z==="sv,
                                        "="sv,         "Zg==Zm9v"sv,
                                        "Zm=v"sv,      "Zm9v===="sv,
                                        "Z=g="sv,      "=Zm9"sv,
                                        "Zm9-"sv,      "Zm9_"sv,
                                        "Zm9\0"sv,     "Zm9\x80"sv,
                                        "Zm9\xFF"sv,   "data:;base64,Zm9v"sv,
                                        "{}  "sv})
        EXPECT_EQ(base64Decode(text), std::nullopt) << text;
}

TEST(Base64, FindsAForeignCharacterAnywhere) {
    const std::string good = base64Encode("any bytes, as long as there are some of them");
    for (std::size_t at = 0; at < good.size(); ++at)
        for (const char foreign : {' ', '\r', '-', '_', '*', '\0', '\x81'}) {
            std::string text = good;
            text[at] = foreign;
            EXPECT_EQ(base64Decode(text), std::nullopt) << at;
        }
}

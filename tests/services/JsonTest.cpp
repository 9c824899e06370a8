#include "services/util/Json.h"

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <limits>

using namespace kestrin;
namespace json = boost::json;

TEST(Json, ReadsAndWritesWhatIsJsonAndUtf8) {
    for (const std::string_view good : {"{}", "1", "null", " {\"a\" : [1, 2.5, true]}\n", "\"\\u0000\""})
        EXPECT_TRUE(parseJson(good)) << good;
    for (const std::string_view bad :
         {"", " ", "{", "{}x", "[1,]", "{'a':1}", "\"\xC3\x28\"", "NaN", "\"a\nb\"", "01"})
        EXPECT_FALSE(parseJson(bad)) << bad;
    EXPECT_FALSE(parseJson(std::string_view("{}\0", 3)));
    EXPECT_FALSE(serializeJson(json::array{std::numeric_limits<double>::infinity()}));
    EXPECT_TRUE(serializeJson(json::array{"\xE2\x82\xAC\xF4\x8F\xBF\xBF"}));
    for (const char* bad : {"\x80", "\xC1\xBF", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_FALSE(serializeJson(json::array{bad})) << bad;
        EXPECT_FALSE(serializeJson(json::object{{bad, 1}})) << bad;
    }
}

TEST(Json, TellsMembersPresenceTruthAndNumbers) {
    struct {
        const char* text;
        bool present, isTrue;
        std::optional<int> number;
    } const cases[] = {
        {R"({"a":{"b":false}})", true, false, 0}, {R"({"a":{"b":null}})", false, false, {}},
        {R"({"a":{"b":-7.9}})", true, true, -7},  {R"({"a":{"b":1e300}})", true, true, 2147483647},
        {R"({"a":{"b":"1"}})", true, false, {}},  {R"({"b":1})", false, false, {}}};
    for (const auto& [text, present, truth, number] : cases) {
        const json::value map = parseJson(text).value();
        const json::value* const member = findMember(&map, {"a", "b"});
        EXPECT_EQ(isPresent(member), present) << text;
        EXPECT_EQ(isTrue(member), truth) << text;
        EXPECT_EQ(wholeNumberOf(member), number) << text;
    }
}

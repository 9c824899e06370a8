#include "services/util/Json.h"

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <limits>

using namespace kestrin;
namespace json = boost::json;

namespace {

std::string nested(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

json::value parsed(std::string_view text) { return parseJson(text).value(); }

} // namespace

TEST(Json, ReadsAnyValueAndNothingBroken) {
    for (const std::string_view good :
         {"{}", "[]", "1", "\"x\"", "null", " {\"a\" : [1, 2.5, true]}\n", "\"\\u0000\""})
        EXPECT_TRUE(parseJson(good)) << good;
    for (const std::string_view bad :
         {"", " ", "{", "{}x", "{\"a\":}", "[1,]", "{'a':1}", "\"\xC3\x28\"", "\"\xED\xA0\x80\"", "NaN",
          "\xEF\xBB\xBF{}", "\"a\nb\"", "01", "<html></html>"})
        EXPECT_FALSE(parseJson(bad)) << bad;
    EXPECT_FALSE(parseJson(std::string_view("{}\0", 3)));
}

TEST(Json, NestsToItsBoundAndNotBeyond) {
    EXPECT_TRUE(parseJson(nested(kMaxJsonDepth)));
    EXPECT_FALSE(parseJson(nested(kMaxJsonDepth + 1)));
    EXPECT_FALSE(parseJson(nested(2'000'000)));
    EXPECT_FALSE(parseJson(std::string(5'000'000, '[')));

    json::value deep = parsed(nested(kMaxJsonDepth));
    EXPECT_EQ(serializeJson(deep), nested(kMaxJsonDepth));
    EXPECT_EQ(serializeJson(json::value(json::array{deep})), std::nullopt);
}

TEST(Json, DoesNotWriteWhatIsNoNumber) {
    EXPECT_EQ(serializeJson(json::object{{"a", json::array{1, 2.5, nullptr, "\"/\n"}}}),
              "{\"a\":[1,2.5E0,null,\"\\\"/\\n\"]}");
    for (const double number :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
        EXPECT_EQ(serializeJson(json::array{json::object{{"a", number}}}), std::nullopt);
}

TEST(Json, FindsMembersByPath) {
    const json::value value =
        parsed(R"({"data": {"share": false, "error": null, "list": [{"x": 1}]}, "n": 3})");
    const json::object& map = value.as_object();
    EXPECT_EQ(*findMember(map, {"n"}), 3);
    EXPECT_EQ(*findMember(&value, {"data", "share"}), false);
    EXPECT_TRUE(findMember(map, {"data", "error"})->is_null());
    for (const JsonPath path :
         {JsonPath{"x"}, {"data", "x"}, {"n", "x"}, {"data", "list", "x"}, {"data", "error", "x"}})
        EXPECT_EQ(findMember(map, path), nullptr);
    EXPECT_EQ(findMember(nullptr, {"n"}), nullptr);
}

TEST(Json, TellsPresenceTruthAndNumbers) {
    struct {
        std::string_view text;
        bool present, isTrue;
        std::optional<int> number;
    } const cases[] = {{"false", true, false, 0},     {"true", true, true, 1},
                       {"null", false, false, {}},    {"0", true, false, 0},
                       {"0.5", true, true, 0},        {"-3", true, true, -3},
                       {"7.9", true, true, 7},        {"1e300", true, true, 2147483647},
                       {"\"true\"", true, false, {}}, {"\"1\"", true, false, {}},
                       {"\"\"", true, false, {}},     {"{\"a\":1}", true, false, {}},
                       {"[1]", true, false, {}},      {"18446744073709551615", true, true, 2147483647}};
    for (const auto& [text, present, truth, number] : cases) {
        const json::value value = parsed(text);
        EXPECT_EQ(isPresent(&value), present) << text;
        EXPECT_EQ(isTrue(&value), truth) << text;
        EXPECT_EQ(wholeNumberOf(&value), number) << text;
    }
    EXPECT_FALSE(isPresent(nullptr) || isTrue(nullptr) || wholeNumberOf(nullptr) || textOf(nullptr));
    const json::value text = parsed("\"a\\u0000b\""), number = 5;
    EXPECT_EQ(textOf(&text), std::string("a\0b", 3));
    EXPECT_EQ(textOf(&number), std::nullopt);
}

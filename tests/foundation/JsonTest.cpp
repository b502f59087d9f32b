#include "core/foundation/Json.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

constexpr std::size_t manyBytes = 1'000'000;

// What is read, in plain print; "none" when it isn't read.
std::string printed(std::string_view bytes) {
    const auto json = Json::parse(bytes, manyBytes);
    return json ? json->text() : "none";
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST(Json, escapesOnlyWhatMustBeEscaped) {
    EXPECT_EQ(quotedJson(""), R"("")");
    EXPECT_EQ(quotedJson("a/b \"c\" \\d\x7F \xC3\xA9"), "\"a/b \\\"c\\\" \\\\d\x7F \xC3\xA9\"");
    EXPECT_EQ(quotedJson(std::string_view("\t\n\r\b\0\x1F", 6)), R"("\t\n\r\u0008\u0000\u001f")");
}

TEST(Json, readsExactlyOneValueInUtf8) {
    struct Case {
        const char* why;
        std::string bytes;
        std::string text;
    };
    const std::string nul("\0", 1);
    const Case cases[] = {
        {"white space around", " \n{\"b\": [1, {}, \"x\\ny\"],\t\"a\": null}\r\n",
         R"({"a":null,"b":[1,{},"x\ny"]})"},
        {"a text alone is printed without quotes", R"("\u00e9\ud83d\ude00\/")", "\xC3\xA9\xF0\x9F\x98\x80/"},
        {"numbers stay as they were written", "[1.50,-0,2E+2,18446744073709551616]",
         "[1.50,-0,2E+2,18446744073709551616]"},
        {"literals", "[true,false,null]", "[true,false,null]"},
        {"a NUL in a text", R"("a\u0000b")", "a" + nul + "b"},
        {"as deep as may be", nested(Json::maxDepth), nested(Json::maxDepth)},
        {"one level deeper", nested(Json::maxDepth + 1), "none"},
        {"very deep", nested(100'000), "none"},
        {"very deep and never closed", std::string(100'000, '['), "none"},
        {"very deep objects",
         [] {
             std::string deep;
             for (int i = 0; i < 50'000; ++i) deep += "{\"a\":";
             return deep;
         }(),
         "none"},
        {"nothing", "", "none"},
        {"a byte-order mark", "\xEF\xBB\xBF{}", "none"},
        {"something behind", "{} x", "none"},
        {"a NUL behind", "{}" + nul, "none"},
        {"a second value", "{}{}", "none"},
        {"cut short", R"({"a":1)", "none"},
        {"no UTF-8", "\"\xFF\"", "none"},
        {"overlong UTF-8", "\"\xC0\xAF\"", "none"},
        {"a lone surrogate", R"("\ud800")", "none"},
        {"a raw line break in a text", "\"\n\"", "none"},
        {"a member named twice", R"({"a":1,"b":2,"a":1})", "none"},
        {"twice by an escape, deeper down", R"([{"a":1,"\u0061":2}])", "none"},
        {"a comma at the end", "[1,]", "none"},
        {"a comment", "[1/**/]", "none"},
        {"not a number", "NaN", "none"},
        {"a number beyond a double", "1e400", "none"},
        {"an exponent beyond an integer", "1e99999999999", "none"},
        {"a zero in front", "01", "none"},
    };
    for (const auto& c : cases) EXPECT_EQ(printed(c.bytes), c.text) << c.why;

    EXPECT_TRUE(Json::parse("[1]", 3));
    EXPECT_FALSE(Json::parse("[1]", 2));
}

TEST(Json, takesOnlyWholeNumbersAsIntegers) {
    struct Case {
        const char* text;
        std::optional<std::int64_t> integer;
    };
    const Case cases[] = {
        {"1", 1},
        {"1.0", 1},
        {"10e-1", 1},
        {"0.01E+2", 1},
        {"1.50e1", 15},
        {"-0", 0},
        {"0.000e-9", 0},
        {"-120.00", -120},
        {"536870912.0", 536870912},
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775808", std::nullopt},
        {"1e19", std::nullopt},
        {"1e300", std::nullopt},
        {"1.5", std::nullopt},
        {"1.00000000000000000000000000000000001", std::nullopt},
        {"1e-2147483646", std::nullopt},
        {"true", std::nullopt},
        {"null", std::nullopt},
        {"\"1\"", std::nullopt},
        {"[1]", std::nullopt},
    };
    for (const auto& c : cases) {
        const auto json = Json::parse(c.text, manyBytes);
        ASSERT_TRUE(json) << c.text;
        EXPECT_EQ(json->asInteger(), c.integer) << c.text;
    }
}

TEST(Json, findsMembersOfObjectsOnly) {
    const auto json = Json::parse(R"({"v":1.0,"join":"x","more":{"v":[]}})", manyBytes);
    ASSERT_TRUE(json && json->isObject());
    EXPECT_TRUE(json->member("v")->isNumber());
    EXPECT_EQ(json->member("join")->asString(), "x");
    EXPECT_EQ(json->member("join")->member("v"), nullptr);
    EXPECT_EQ(json->member("jo"), nullptr);
    EXPECT_EQ(json->member("z"), nullptr);
    EXPECT_FALSE(json->member("more")->member("v")->isObject());

    std::string keys;
    for (const auto& member : json->members()) keys += member.key + " ";
    EXPECT_EQ(keys, "join more v ");
}

}  // namespace
}  // namespace tarnik

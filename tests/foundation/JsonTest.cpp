#include "core/foundation/Json.h"

#include <gtest/gtest.h>

#include "tests/support/Words.h"

namespace tarnik {
namespace {

constexpr std::size_t manyBytes = 1'000'000;

std::string nested(std::size_t depth, const std::string& closing = "]") {
    std::string text(depth, '[');
    for (std::size_t i = 0; i < depth; ++i) text += closing;
    return text;
}

TEST(Json, escapesOnlyQuotesBackslashesAndControls) {
    EXPECT_EQ(quotedJson("a/b \"c\" \\d\x7F \u00E9"), "\"a/b \\\"c\\\" \\\\d\x7F \u00E9\"");
    EXPECT_EQ(quotedJson(std::string_view("\t\n\r\b\0\x1F", 6)), R"("\t\n\r\u0008\u0000\u001f")");
}

TEST(Json, parsesAndPrintsOneValue) {
    const std::pair<std::string, std::string> cases[] = {
        {" \n{\"b\": [1, {}, \"x\\ny\"],\t\"a\": null}\r\n", R"({"a":null,"b":[1,{},"x\ny"]})"},
        {R"("\u00e9\ud83d\ude00\/")", "\u00E9\U0001F600/"},  // without quotes
        {"[1.50,-0,18446744073709551616,true]", "[1.50,-0,18446744073709551616,true]"},
        {nested(32), nested(32)},
    };
    for (const auto& [bytes, text] : cases) {
        const auto json = Json::parse(bytes, bytes.size());
        EXPECT_EQ(json ? json->text() : "none", text);
        EXPECT_FALSE(Json::parse(bytes, bytes.size() - 1));
    }
}

TEST(Json, rejectsAnythingElse) {
    // The last two have a duplicate member, once by an escape.
    auto refused = words(R"([1/**/] {"a":1 {}{} 1e400 )"
                         "\uFEFF{} \"\xFF\" "
                         R"({"a":1,"b":2,"a":1} [{"a":1,"\u0061":2}])");
    refused.insert(refused.end(), {"", {"{}\0", 3}, nested(33), nested(100'000, "")});
    for (const auto& bytes : refused) EXPECT_FALSE(Json::parse(bytes, manyBytes)) << bytes.substr(0, 100);
}

TEST(Json, convertsOnlyIntegers) {
    const std::pair<std::optional<std::int64_t>, const char*> cases[] = {
        {1, "1 1.0 10e-1 0.01E+2"},
        {0, "-0 0.000e-9"},
        {INT64_MAX, "9223372036854775807"},
        {INT64_MIN, "-9223372036854775808"},
        {{}, "9223372036854775808 1e19 1.5 1.0000000000000000000000000001 1e-2147483646 true \"1\""},
    };
    for (const auto& [integer, texts] : cases)
        for (const auto& text : words(texts)) EXPECT_EQ(Json::parse(text, 100)->asInteger(), integer) << text;
}

}  // namespace
}  // namespace tarnik

#include "core/foundation/Utf8.h"

#include <string>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

const std::string bad = "\xEF\xBF\xBD";

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

TEST(Utf8, replacesEachBrokenSequenceOnce) {
    struct Case {
        const char* why;
        std::string bytes;
        std::string text;
    };
    const Case cases[] = {
        {"nothing", "", ""},
        {"the first and last of each length",
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {"beside the surrogates", "\xED\x9F\xBF\xEE\x80\x80", "\xED\x9F\xBF\xEE\x80\x80"},
        {"stray continuation bytes", "a\x80\xBFz", "a" + bad + bad + "z"},
        {"overlong slash", "\xC0\xAF\xE0\x80\xAF\xF0\x80\x80\xAF", repeated(bad, 9)},
        {"surrogates", "\xED\xA0\x80\xED\xBF\xBF", repeated(bad, 6)},
        {"above the last code point", "\xF4\x90\x80\x80\xF5\xFF", repeated(bad, 6)},
        {"beginnings of longer sequences",
         "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
         "A",
         bad + bad + bad + bad + "A"},
        {"cut off at the end", "ok\xF0\x9F\x98", "ok" + bad},
        {"a lead byte where a continuation should be", "\xE2\x82\xE2\x82\xAC", bad + "\xE2\x82\xAC"},
        {"long text, broken past the blocks",
         std::string(100, 'a') + "\xC3\xA9" + std::string(67, 'b') + "\xFF",
         std::string(100, 'a') + "\xC3\xA9" + std::string(67, 'b') + bad},
    };
    for (const auto& c : cases) EXPECT_EQ(decodeLossy(c.bytes), c.text) << c.why;
}

TEST(Utf8, keepsWholeCharactersFromTheEnd) {
    const std::string accent = "e\xCC\x81";  // e and a combining acute
    const std::string family = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
    const std::string flag = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
    struct Case {
        const char* why;
        std::string text;
        std::size_t count;
        std::string end;
    };
    const Case cases[] = {
        {"more than there is", accent, 2, accent},
        {"exactly what there is", "abc" + accent, 4, "abc" + accent},
        {"plain text", std::string(20000, 'a') + "xyz", 3, "xyz"},
        {"a combining mark stays with its letter", "a" + accent + accent, 1, accent},
        {"a line end is one character", "ab\r\n", 2, "b\r\n"},
        {"but not the other way round", "ab\n\r", 2, "\n\r"},
        {"joined emoji", "a" + family + family + "b", 2, family + "b"},
        {"flags pair up from the left", "ab" + flag + flag + flag, 2, flag + flag},
        {"flags parted by a letter", flag + "a" + flag, 2, "a" + flag},
        {"bytes that aren't UTF-8", "ab\xFF\xC3", 3, "b\xFF\xC3"},
    };
    for (const auto& c : cases) EXPECT_EQ(lastCharacters(c.text, c.count), c.end) << c.why;
}

}  // namespace
}  // namespace tarnik

#include "core/foundation/Utf8.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace tarnik {

TEST(Utf8, replacesEachInvalidSequenceOnce) {
    const std::string bad = "\uFFFD";
    const std::string bad6 = bad + bad + bad + bad + bad + bad;
    // The first and last character of each length, and those beside the surrogates.
    const std::string good = "\x7F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
    const std::string longer = std::string(100, 'a') + "\u00E9" + std::string(67, 'b');
    const std::pair<std::string, std::string> cases[] = {
        {good, good},
        {"a\x80\xBFz", "a" + bad + bad + "z"},
        {"\xC0\xAF\xE0\x80\xAF\xF0\x80\x80\xAF", bad6 + bad + bad + bad},  // overlong slashes
        {"\xED\xA0\x80\xED\xBF\xBF", bad6},                                // surrogates
        {"\xF4\x90\x80\x80\xF5\xFF", bad6},                                // above the last code point
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF.", bad + bad + bad + bad + "."},
        {"ok\xF0\x9F\x98", "ok" + bad},
        {longer + "\xFF", longer + bad},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(decodeLossy(bytes), text);
}

TEST(Utf8, findsTheLastCharacters) {
    const std::string accent = "e\u0301";  // e and a combining acute
    const std::string family = "\U0001F469\u200D\U0001F467";
    const std::string flag = "\U0001F1E9\U0001F1EA";
    const std::tuple<std::string, std::size_t, std::string> cases[] = {
        {"", 4, "abc" + accent},
        {std::string(20000, 'a'), 3, "xyz"},
        {"a", 2, "b\r\n"},
        {"ab", 2, "\n\r"},
        {"a" + family, 2, family + "b"},
        {"ab" + flag, 2, flag + flag},  // flags are paired from the left
        {"a", 3, "b\xFF\xC3"},
    };
    for (const auto& [before, count, end] : cases) {
        LastCharacters last(count);
        last.append(before);
        last.append(end);
        EXPECT_EQ((before + end).substr(last.start()), end);
    }
}

}  // namespace tarnik

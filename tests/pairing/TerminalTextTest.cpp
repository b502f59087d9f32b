#include "core/pairing/TerminalText.h"

#include <gtest/gtest.h>

namespace tarnik {

// Tests each text at each offset of a block, at the end of the input and before more text.
TEST(TerminalText, dropsSequencesAndControlCharacters) {
    using namespace std::string_literals;
    const std::pair<std::string, std::string> cases[] = {
        {"a\r\nb", "a\nb"},
        {"\x1B[1;32mok\x1B[0m", "ok"},
        {"\x1B[?\x7F\u00E9 @a\x1B[!~b", "ab"},  // the first and last final bytes, and bytes beside them
        {"\x1B[38;2;100;100;100;48;2;20;20;20mx", "x"},
        {"\x1B[1\x1B[mx", "mx"},
        {"\x1B]0;title\ax\x1B]0;title\x1B\\y", "xy"},
        {"\x1B]\\0;a\\b\x1B[\\\x1B\\x", "x"},
        {"\x1B(Bx\x1B\x1B[y\x1B\ry", "Bx[yy"},
        {"\x1B\U0001F600\u00E9", "\u00E9"},
        {"\0\x01\x08\x0B\f\x0E\x1A\x1C\x1F"s, ""},
        {"\t\n ~\x7F\u0080\u00E9\U0001F600", "\t\n ~\x7F\u0080\u00E9\U0001F600"},
    };
    for (const auto& [text, cleaned] : cases)
        for (std::string start; start.size() < 80; start += 'a')
            for (const auto& end : {std::string(), std::string(1, '.'), std::string(100, '.')})
                ASSERT_EQ(TerminalText::clean(start + text + end), start + cleaned + end);
}

TEST(TerminalText, dropsEverythingAfterAnIncompleteSequence) {
    for (const std::string text :
         {"\x1B", "\x1B[", "\x1B[1;3", "\x1B]", "\x1B]0;title", "\x1B]0;title\x1B", "\x1B]\\"}) {
        EXPECT_EQ(TerminalText::clean("ok" + text), "ok");
        if (text == "\x1B") continue;
        EXPECT_EQ(TerminalText::clean("ok" + text + std::string(200, '5')), "ok");
    }
}

}  // namespace tarnik

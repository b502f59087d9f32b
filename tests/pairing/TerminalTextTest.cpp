#include "core/pairing/TerminalText.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

// Every text stands at every place of a block, at the very end and with more behind it.
TEST(TerminalText, keepsTheTextAndDropsTheRest) {
    using namespace std::string_literals;
    struct Case {
        const char* why;
        std::string text;
        std::string cleaned;
    };
    const Case cases[] = {
        {"nothing", "", ""},
        {"line ends", "a\r\nb", "a\nb"},
        {"progress on one line", "10%\r20%\r30%", "10%20%30%"},
        {"colours", "\x1B[1;32mok\x1B[0m", "ok"},
        {"the first and last final bytes, and bytes beside them", "\x1B[?\x7F\xC3\xA9 @a\x1B[!~b", "ab"},
        {"a long control sequence", "\x1B[38;2;100;100;100;48;2;20;20;20mx", "x"},
        {"an escape inside a control sequence", "\x1B[1\x1B[mx", "mx"},
        {"a title ended by a bell", "\x1B]0;title\ax", "x"},
        {"a title ended by a string terminator", "\x1B]0;title\x1B\\x", "x"},
        {"backslashes that end nothing", "\x1B]\\0;a\\b\x1B[\\\x1B\\x", "x"},
        {"two-character sequences", "\x1B(Bx\x1B\x1B[y\x1B\ry", "Bx[yy"},
        {"a scalar of several bytes after an escape", "\x1B\xF0\x9F\x98\x80\xC3\xA9", "\xC3\xA9"},
        {"control characters", "\0\x01\x08\x0B\f\x0E\x1A\x1C\x1F"s, ""},
        {"what stays", "\t\n ~\x7F\xC2\x80\xC3\xA9\xF0\x9F\x98\x80",
         "\t\n ~\x7F\xC2\x80\xC3\xA9\xF0\x9F\x98\x80"},
    };
    for (const auto& c : cases) {
        for (std::size_t before = 0; before < 80; ++before) {
            for (const std::size_t behind : {0U, 1U, 100U}) {
                const std::string start(before, 'a');
                const std::string end(behind, '.');
                ASSERT_EQ(TerminalText::clean(start + c.text + end), start + c.cleaned + end)
                    << c.why << ", " << before;
            }
        }
    }
}

TEST(TerminalText, dropsAllAfterAnUnfinishedSequence) {
    for (const std::string text :
         {"\x1B", "\x1B[", "\x1B[1;3", "\x1B]", "\x1B]0;title", "\x1B]0;title\x1B", "\x1B]\\"}) {
        EXPECT_EQ(TerminalText::clean("ok" + text), "ok");
        if (text == "\x1B") continue;
        EXPECT_EQ(TerminalText::clean("ok" + text + std::string(200, '5')), "ok");
    }
}

}  // namespace
}  // namespace tarnik

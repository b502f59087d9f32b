#include "core/foundation/OneLine.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(OneLine, isShortAndPlain) {
    struct Case {
        const char* why;
        std::string text;
        std::string line;
    };
    const Case cases[] = {
        {"nothing", "", ""},
        {"plain, as long as may be", "a \xC3\xBC\xE2\x82\xAC\xF0\x9F\x99\x82",
         "a \xC3\xBC\xE2\x82\xAC\xF0\x9F\x99\x82"},
        {"one too long", "abcdef", "abcd\xE2\x80\xA6"},
        {"cut between characters", "abcd\xF0\x9F\x99\x82z", "abcd\xE2\x80\xA6"},
        {"controls, which don't count", "\x1B[1m\x7F" + std::string(9, '\0') + "a\xC2\x9B", "[1ma"},
        {"line ends, one blank for several", "\na\r\n\tb\n", "a b"},
        {"line ends of Unicode",
         "a\xE2\x80\xA8"
         "b\xE2\x80\xA9"
         "c\xC2\x85",
         "a b c"},
        {"turned around",
         "a\xE2\x80\xAE"
         "b\xE2\x81\xA6"
         "c\xE2\x80\x8F",
         "abc"},
        {"not UTF-8",
         "a\xFF"
         "b",
         "a\xEF\xBF\xBD"
         "b"},
    };
    for (const auto& c : cases) EXPECT_EQ(oneLine(c.text, 5), c.line) << c.why;
}

}  // namespace
}  // namespace tarnik

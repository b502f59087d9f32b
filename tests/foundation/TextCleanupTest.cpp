#include "core/foundation/TextCleanup.h"

#include <gtest/gtest.h>

namespace tarnik {

TEST(TextCleanup, makesOneShortLine) {
    const std::pair<std::string, const char*> cases[] = {
        {"a \u00FC\u20AC\U0001F642", "a \u00FC\u20AC\U0001F642"},
        {"\u0800\u0800\u0800\u0800z", "\u0800\u0800\u0800\u0800z"},
        {"abcdef", "abcd\u2026"},
        {"abcd\U0001F642z", "abcd\u2026"},
        {"\x1B[1m\x7F" + std::string(9, '\0') + "a\xC2\x9B", "[1ma"},  // removed characters don't count
        {"\na\r\n\tb\n", "a b"},
        {"a\u2028b\u2029c\xC2\x85", "a b c"},
        {"a\u202E\u061Cb\u2066c\u200F", "abc"},
        {"a\xFFz", "a\uFFFDz"},
    };
    for (const auto& [text, line] : cases) EXPECT_EQ(sanitizedLine(text, 5), line);
}

}  // namespace tarnik

#include "core/foundation/Placeholders.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(Placeholders, findsTheValuesThatWereFilledIn) {
    struct Case {
        const char* why;
        std::string_view pattern;
        std::string_view text;
        std::optional<Placeholders> values;
    };
    const Case cases[] = {
        {"no placeholder", "Done.", "Done.", Placeholders{}},
        {"another text", "Done.", "Done!", std::nullopt},
        {"one", "Node.js {version}…", "Node.js 22.1…", {{{"version", "22.1"}}}},
        {"two", "{a} of {b}", "1 of 2", {{{"a", "1"}, {"b", "2"}}}},
        {"a value that looks like a placeholder", "({a})", "({b})", {{{"a", "{b}"}}}},
        {"the end of the pattern inside the value", "The file {a}.", "The file a.b.", {{{"a", "a.b"}}}},
        {"a missing end", "({a})", "(x", std::nullopt},
        {"an overlap of beginning and end", "ab{x}bc", "abc", std::nullopt},
    };
    for (const auto& c : cases) {
        const auto values = valuesOf(c.pattern, c.text);
        EXPECT_EQ(values, c.values) << c.why;
        if (values) {
            EXPECT_EQ(filled(c.pattern, *values), c.text) << c.why;
        }
    }
    EXPECT_EQ(filled("{a}{b} {", {{"b", "2"}}), "{a}2 {");
}

}  // namespace
}  // namespace tarnik

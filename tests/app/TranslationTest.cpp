#include "app/texts/Translation.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

// A language in which every text is in brackets and the decimal separator is a comma.
Translator brackets() {
    return {.text = [](auto text) { return text == "unknown" ? "" : "[" + std::string(text) + "]"; },
            .countedText = [](const auto& text, auto) { return "[" + std::string(text.many) + "]"; },
            .number = [](double number, int) { return std::to_string(static_cast<int>(number)) + ",5"; },
            .timeOfDay = {}};
}

struct TranslationTest : testing::Test {
    ~TranslationTest() override { setTranslator({}); }
};

TEST_F(TranslationTest, givesEachTextInItsLanguage) {
    constexpr CountedText days{"{count} day", "{count} days"};
    EXPECT_EQ(translated("Quit"), "Quit");
    EXPECT_EQ(translated(days, 1), "1 day");
    EXPECT_EQ(translated(days, 2), "2 days");
    EXPECT_EQ(formattedSize(18'149'999), "18.1 MB");

    setTranslator(brackets());
    EXPECT_EQ(translated("Version {version}", {{"version", "2.1"}}), "[Version 2.1]");
    EXPECT_EQ(translated("unknown"), "unknown");
    EXPECT_EQ(translated(days, 1), "[1 days]");
    EXPECT_EQ(textIn(Language::english, days, 1), "1 day");
    EXPECT_EQ(textIn(Language::english, "Quit"), "Quit");
    EXPECT_EQ(formattedSize(7'500'000), "[7,5 MB]");
}

}  // namespace
}  // namespace tarnik

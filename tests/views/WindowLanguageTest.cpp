#include "app/desktop/WindowLanguage.h"

#include <QApplication>

#include <gtest/gtest.h>

#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"

namespace tarnik {
namespace {

constexpr CountedText days{"{count} day", "{count} days"};

struct WindowLanguageTest : testing::Test {
    ~WindowLanguageTest() override {
        setTranslator({});
        QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto);
    }
};

TEST_F(WindowLanguageTest, setsTheTextsFormsAndDirectionOfALanguage) {
    ASSERT_TRUE(setWindowLanguage("de"));
    EXPECT_EQ(translated(WindowTexts::cancel), "Abbrechen");
    EXPECT_EQ(translated(days, 1), "1 Tag");
    EXPECT_EQ(translated(days, 2), "2 Tagen");
    EXPECT_EQ(formattedSize(18'100'000), "18,1 MB");

    ASSERT_TRUE(setWindowLanguage("rtl"));
    EXPECT_NE(translated(WindowTexts::cancel), WindowTexts::cancel);
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(translated("not in the catalogue"), "not in the catalogue");

    EXPECT_FALSE(setWindowLanguage("xx"));
}

TEST(WindowLanguage, followsTheOrderOfThePersonsLanguages) {
    EXPECT_EQ(catalogueFor({"en-GB", "en", "de"}), "");
    EXPECT_EQ(catalogueFor({"xh-ZA", "de-AT", "en"}), "de");
    EXPECT_EQ(catalogueFor({"xh"}), "");
    EXPECT_EQ(catalogueFor({"C", "de"}), "");
}

}  // namespace
}  // namespace tarnik

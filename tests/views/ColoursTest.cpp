#include "app/views/Colours.h"

#include <gtest/gtest.h>

namespace tarnik {

TEST(Colours, measureContrastAsWcagDoes) {
    EXPECT_NEAR(contrastBetween(Qt::white, Qt::black), 21, 0.01);
    EXPECT_NEAR(contrastBetween(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
}

TEST(Colours, areReadableWithAnyAccent) {
    const std::optional<AccentColour> accents[] = {std::nullopt,
                                                   AccentColour{1, 1, 0},
                                                   AccentColour{0.21, 0.52, 0.89},
                                                   AccentColour{0, 0, 0.3},
                                                   AccentColour{1, 1, 1},
                                                   AccentColour{0.47, 0.47, 0.47}};
    for (const bool isHigher : {false, true})
        for (const auto appearance : {Appearance::light, Appearance::dark})
            for (const auto& accent : accents) {
                const auto contrast = isHigher ? Contrast::higher : Contrast::usual;
                const auto palette = paletteFor(appearance, {.accent = accent, .contrast = contrast});
                EXPECT_EQ(contrastOf(palette), contrast);
                EXPECT_EQ(appearanceOf(palette), appearance);
                const QColor window = palette.color(QPalette::Window),
                             fill = palette.color(QPalette::Highlight);
                const auto name = fill.name().toStdString();
                EXPECT_GE(contrastBetween(palette.color(QPalette::HighlightedText), fill), 4.5) << name;
                EXPECT_GE(contrastBetween(accentColour(palette), window), 4.5) << name;
                for (auto* text : {&secondaryColour, &successColour, &warningColour, &errorColour})
                    EXPECT_GE(contrastBetween(text(palette), window), 4.5);
                EXPECT_GE(contrastBetween(secondaryColour(palette), cardColour(palette)),
                          isHigher ? 11 : 4.5);
                EXPECT_GE(contrastBetween(accentColour(palette), trackColour(palette)), accent ? 2.9 : 4.5);
                for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
                    EXPECT_GE(contrastBetween(lineColour(palette), palette.color(role)), isHigher ? 11 : 3);
                EXPECT_GE(contrastBetween(palette.color(QPalette::Disabled, QPalette::ButtonText),
                                          disabledGround(palette)),
                          3);
            }
}

}  // namespace tarnik

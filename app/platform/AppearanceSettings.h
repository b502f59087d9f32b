#pragma once

#include <optional>

namespace tarnik {

// The brightness of the colours that the user prefers.
enum class ColourScheme { light, dark, unknown };

// The contrast of texts and lines to their background.
enum class Contrast { usual, higher };

// An sRGB colour. Each component is from 0 to 1.
struct AccentColour {
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const AccentColour&) const = default;
};

// Colour preferences that apply to the light and to the dark palette.
struct PaletteOptions {
    std::optional<AccentColour> accent;
    Contrast contrast = Contrast::usual;

    bool operator==(const PaletteOptions&) const = default;
};

// Whether changes on the screen may be animated.
enum class Motion { usual, reduced };

// The user's appearance preferences for all programs. The defaults mean "no preference".
struct AppearanceSettings {
    ColourScheme scheme = ColourScheme::unknown;
    PaletteOptions options;
    Motion motion = Motion::usual;

    bool operator==(const AppearanceSettings&) const = default;
};

}  // namespace tarnik

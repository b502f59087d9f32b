#pragma once

#include <optional>

namespace tarnik {

enum class ColourScheme { light, dark, unknown };
enum class Contrast { usual, higher };

// In sRGB, each part from 0 to 1.
struct AccentColour {
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const AccentColour&) const = default;
};

// What of the colours is chosen beside light and dark.
struct PaletteOptions {
    std::optional<AccentColour> accent;
    Contrast contrast = Contrast::usual;

    bool operator==(const PaletteOptions&) const = default;
};

// What the person has chosen for all programs; nothing, where there is no such choice.
struct AppearanceSettings {
    ColourScheme scheme = ColourScheme::unknown;
    PaletteOptions options;

    bool operator==(const AppearanceSettings&) const = default;
};

}  // namespace tarnik

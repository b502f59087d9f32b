#include "app/views/Colours.h"

#include <algorithm>
#include <cmath>

namespace tarnik {
namespace {

struct Tones {
    QRgb window, base, alternate, button, text, quiet, link, fill, onFill, shadow;
};

constexpr Tones lightTones{.window = 0xfffafafb,
                           .base = 0xffffffff,
                           .alternate = 0xfff2f2f5,
                           .button = 0xffffffff,
                           .text = 0xff1c1c22,
                           .quiet = 0xff6b6b76,
                           .link = 0xff0b6b78,
                           .fill = 0xff0f7480,
                           .onFill = 0xffffffff,
                           .shadow = 0xff9a9aa6};
constexpr Tones darkTones{.window = 0xff1d1d22,
                          .base = 0xff26262c,
                          .alternate = 0xff2c2c33,
                          .button = 0xff33333b,
                          .text = 0xfff0f0f4,
                          .quiet = 0xffa3a3af,
                          .link = 0xff56cfc0,
                          .fill = 0xff12807f,
                          .onFill = 0xffffffff,
                          .shadow = 0xff000000};

constexpr double readableContrast = 4.5;

double luminance(const QColor& colour) {
    const auto linear = [](int value) {
        const double part = value / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red()) + 0.7152 * linear(colour.green()) + 0.0722 * linear(colour.blue());
}

// Mixes `wanted` with the text colour until the mixture is readable on the window.
QRgb readableOnWindow(const Tones& tones, const QColor& wanted) {
    constexpr int steps = 20;
    for (int step = steps; step > 0; --step) {
        const QColor colour = mixed(wanted, QColor(tones.text), static_cast<double>(step) / steps);
        if (contrastBetween(colour, QColor(tones.window)) >= readableContrast) return colour.rgb();
    }
    return tones.text;
}

Tones tonesFor(Appearance appearance, const PaletteOptions& options) {
    Tones tones = appearance == Appearance::dark ? darkTones : lightTones;
    if (options.contrast == Contrast::higher) tones.quiet = tones.text;
    if (!options.accent) return tones;
    const auto part = [](double value) { return static_cast<float>(value); };
    const auto accent =
        QColor::fromRgbF(part(options.accent->red), part(options.accent->green), part(options.accent->blue));
    tones.fill = accent.rgb();
    // White or black is readable on every colour.
    tones.onFill = contrastBetween(accent, Qt::white) >= readableContrast ? 0xffffffff : 0xff000000;
    tones.link = readableOnWindow(tones, accent);
    return tones;
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

}  // namespace

QPalette paletteFor(Appearance appearance, const PaletteOptions& options) {
    const Tones tones = tonesFor(appearance, options);
    QPalette palette(QColor(tones.text), QColor(tones.button), QColor(tones.base), QColor(tones.shadow),
                     mixed(QColor(tones.text), QColor(tones.window), 0.3), QColor(tones.text),
                     QColor(tones.onFill), QColor(tones.base), QColor(tones.window));
    const auto set = [&palette](QPalette::ColorRole role, QRgb tone) {
        palette.setColor(role, QColor::fromRgb(tone));
    };
    set(QPalette::AlternateBase, tones.alternate);
    set(QPalette::ToolTipBase, tones.alternate);
    set(QPalette::ToolTipText, tones.text);
    set(QPalette::PlaceholderText, tones.quiet);
    set(QPalette::Highlight, tones.fill);
    set(QPalette::HighlightedText, tones.onFill);
    set(QPalette::Link, tones.link);
    set(QPalette::LinkVisited, tones.link);
    set(QPalette::Shadow, tones.shadow);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, mixed(QColor(tones.text), QColor(tones.window), 0.42));
    return palette;
}

Appearance appearanceOf(const QPalette& palette) {
    return isDark(palette) ? Appearance::dark : Appearance::light;
}

Contrast contrastOf(const QPalette& palette) {
    const auto active = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
    const bool isQuiet = active(QPalette::PlaceholderText) != active(QPalette::WindowText);
    return isQuiet ? Contrast::usual : Contrast::higher;
}

QColor accentColour(const QPalette& palette) {
    return palette.color(QPalette::Link);
}

QColor secondaryColour(const QPalette& palette) {
    const double share = contrastOf(palette) == Contrast::higher ? 1 : 0.7;
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), share);
}

QColor lineColour(const QPalette& palette) {
    // Lines must remain distinguishable from an accent next to them.
    const double share = contrastOf(palette) == Contrast::higher ? 0.42 : 0.13;
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), share);
}

QColor successColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0x3c, 0xcf, 0x76) : QColor(0x1c, 0x8a, 0x48);
}

QColor warningColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0xff, 0xb9, 0x4a) : QColor(0xb8, 0x62, 0x00);
}

QColor brandColour() {
    return {0x1b, 0x94, 0x88};
}

double contrastBetween(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& over, const QColor& under, double share) {
    const auto mix = [share](int a, int b) {
        return static_cast<int>(std::lround(a * share + b * (1 - share)));
    };
    return {mix(over.red(), under.red()), mix(over.green(), under.green()), mix(over.blue(), under.blue())};
}

}  // namespace tarnik

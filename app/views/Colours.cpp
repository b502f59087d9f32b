#include "app/views/Colours.h"

#include <algorithm>
#include <cmath>

namespace tarnik {
namespace {

struct Tones {
    QRgb window, base, button, text, quiet, link, fill, onFill, shadow, disabledText;
};

constexpr Tones lightTones{.window = 0xfffafafb,
                           .base = 0xffffffff,
                           .button = 0xffffffff,
                           .text = 0xff1c1c22,
                           .quiet = 0xff5e5e69,
                           .link = 0xff0b6b78,
                           .fill = 0xff0f7480,
                           .onFill = 0xffffffff,
                           .shadow = 0xff9a9aa6,
                           .disabledText = 0xff86868e};
constexpr Tones darkTones{.window = 0xff1d1d22,
                          .base = 0xff26262c,
                          .button = 0xff33333b,
                          .text = 0xfff0f0f4,
                          .quiet = 0xffadadb8,
                          .link = 0xff56cfc0,
                          .fill = 0xff12807f,
                          .onFill = 0xffffffff,
                          .shadow = 0xff000000,
                          .disabledText = 0xff7a7a82};

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

QColor pick(const QPalette& palette, QRgb light, QRgb dark) {
    return QColor::fromRgb(isDark(palette) ? dark : light);
}

// At higher contrast, weak colours are replaced by the colour of texts.
QColor weak(const QPalette& palette, QRgb light, QRgb dark) {
    if (contrastOf(palette) == Contrast::higher) return palette.color(QPalette::Active, QPalette::WindowText);
    return pick(palette, light, dark);
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
    const QRgb card = cardColour(palette).rgb();
    set(QPalette::AlternateBase, card);
    set(QPalette::ToolTipBase, card);
    set(QPalette::ToolTipText, tones.text);
    // Always quiet, because a placeholder in the colour of texts looks like typed text.
    set(QPalette::PlaceholderText, tones.quiet);
    if (options.contrast == Contrast::higher) set(QPalette::Mid, tones.text);
    set(QPalette::Highlight, tones.fill);
    set(QPalette::HighlightedText, tones.onFill);
    set(QPalette::Link, tones.link);
    set(QPalette::LinkVisited, tones.link);
    set(QPalette::Shadow, tones.shadow);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(tones.disabledText));
    return palette;
}

Appearance appearanceOf(const QPalette& palette) {
    return isDark(palette) ? Appearance::dark : Appearance::light;
}

Contrast contrastOf(const QPalette& palette) {
    const auto active = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
    return active(QPalette::Mid) == active(QPalette::WindowText) ? Contrast::higher : Contrast::usual;
}

QColor accentColour(const QPalette& palette) {
    return palette.color(QPalette::Link);
}

QColor secondaryColour(const QPalette& palette) {
    return weak(palette, lightTones.quiet, darkTones.quiet);
}

QColor lineColour(const QPalette& palette) {
    return weak(palette, 0xff878792, 0xff7d7d89);
}

QColor successColour(const QPalette& palette) {
    return pick(palette, 0xff1a7f42, 0xff3ccf76);
}

QColor warningColour(const QPalette& palette) {
    return pick(palette, 0xffa85800, 0xffffb94a);
}

QColor errorColour(const QPalette& palette) {
    return pick(palette, 0xffb3261e, 0xffff8f86);
}

QColor cardColour(const QPalette& palette) {
    return pick(palette, 0xfff0f0f3, 0xff2a2a31);
}

QColor pillColour(const QPalette& palette) {
    return pick(palette, 0xffececf0, 0xff3a3a43);
}

QColor trackColour(const QPalette& palette) {
    return pick(palette, 0xffdcdce1, 0xff3d3d47);
}

QColor disabledGround(const QPalette& palette) {
    return pick(palette, 0xffececef, 0xff2a2a30);
}

int lineWidth(const QPalette& palette) {
    return contrastOf(palette) == Contrast::higher ? 2 : 1;
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

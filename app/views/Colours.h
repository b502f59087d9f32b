#pragma once

#include <QColor>
#include <QPalette>

#include "app/platform/AppearanceSettings.h"

namespace tarnik {

// The two palettes.
enum class Appearance { light, dark };

// Returns the application's own palette, for desktops that leave colours to the program. Enabled text has a
// contrast of at least 4.5 on its background with every accent.
QPalette paletteFor(Appearance appearance, const PaletteOptions& options = {});

// Both functions also work for palettes of the system.
Appearance appearanceOf(const QPalette& palette);
Contrast contrastOf(const QPalette& palette);  // `higher` if secondary text has the colour of normal text

// Colours that have no role in QPalette.
QColor accentColour(const QPalette& palette);     // readable on the window
QColor secondaryColour(const QPalette& palette);  // for descriptions
QColor lineColour(const QPalette& palette);       // for dividers and weak outlines
QColor successColour(const QPalette& palette);
QColor warningColour(const QPalette& palette);

// The colour of the mark. It is visible on light and on dark backgrounds.
QColor brandColour();

// Returns the WCAG contrast ratio, from 1 (equal colours) to 21.
double contrastBetween(const QColor& one, const QColor& other);

// Mixes two colours. A share of 1 returns `over`, 0 returns `under`.
QColor mixed(const QColor& over, const QColor& under, double share);

}  // namespace tarnik

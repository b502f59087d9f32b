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
Contrast contrastOf(const QPalette& palette);  // `higher` if the middle tone is the colour of texts

// Colours that have no role in QPalette. Texts and symbols in them have a contrast of at least 4.5 on the
// window, lines one of at least 3.
QColor accentColour(const QPalette& palette);
QColor secondaryColour(const QPalette& palette);  // for descriptions
QColor lineColour(const QPalette& palette);       // for dividers and outlines
QColor successColour(const QPalette& palette);
QColor warningColour(const QPalette& palette);
QColor errorColour(const QPalette& palette);
QColor cardColour(const QPalette& palette);   // behind facts
QColor pillColour(const QPalette& palette);   // behind a button inside a field
QColor trackColour(const QPalette& palette);  // behind a progress bar
QColor disabledGround(const QPalette& palette);

// The width of outlines, in points.
int lineWidth(const QPalette& palette);

// The colour of the mark. It is visible on light and on dark backgrounds.
QColor brandColour();

// Returns the WCAG contrast ratio, from 1 (equal colours) to 21.
double contrastBetween(const QColor& one, const QColor& other);

// Mixes two colours. A share of 1 returns `over`, 0 returns `under`.
QColor mixed(const QColor& over, const QColor& under, double share);

}  // namespace tarnik

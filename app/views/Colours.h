#pragma once

#include <QColor>
#include <QPalette>

#include "app/platform/AppearanceSettings.h"

namespace tarnik {

enum class Appearance { light, dark };

// The application's own colours, for desktops that have none for their programs. Every pair of a text and
// its ground has a contrast of at least 4.5, whatever accent was chosen.
QPalette paletteFor(Appearance appearance, const PaletteOptions& options = {});

// Which of the two a palette is, whoever made it.
Appearance appearanceOf(const QPalette& palette);

// Higher where quiet texts are to be as strong as others, and outlines clear.
Contrast contrastOf(const QPalette& palette);

// What palettes have no role for.
QColor accentColour(const QPalette& palette);     // readable on the window
QColor secondaryColour(const QPalette& palette);  // text that explains
QColor lineColour(const QPalette& palette);       // dividers and quiet outlines
QColor successColour(const QPalette& palette);
QColor warningColour(const QPalette& palette);

// The application's colour. Stands out on light and on dark grounds alike.
QColor brandColour();

// From 1 for the same colour to 21, as WCAG has it.
double contrastBetween(const QColor& one, const QColor& other);

// `share` of 1 is all `over`, 0 all `under`.
QColor mixed(const QColor& over, const QColor& under, double share);

}  // namespace tarnik

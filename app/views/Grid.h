#pragma once

#include <QRect>

class QFont;
class QWidget;

namespace tarnik {

// The grid of the window: a gutter for symbols and a column for everything else. Heights and the gutter grow
// with the system's font; margins don't. All results are in pixels, for a left-to-right layout.
class Grid {
public:
    // The size of the window in points, at a system font of 13 pixels.
    static constexpr int pageWidth = 460;
    static constexpr int pageHeight = 560;

    static constexpr int margin =
        28;                        // on both sides of the page; the scroll bar uses a part of the right one
    static constexpr int gap = 6;  // inside a group
    static constexpr int groupGap = 8;
    static constexpr int dividerGap = 16;

    // `width` is the width of the page.
    Grid(const QFont& font, int width);

    // Returns a height for the system's font. `points` is the height at a font of 13 pixels.
    int scaled(int points) const;
    static int scaled(const QFont& font, int points);

    int columnLeft() const { return margin + scaled(32); }
    int columnWidth() const { return width_ - columnLeft() - margin; }

    QRect column(int top, int height) const { return {columnLeft(), top, columnWidth(), height}; }
    // Returns a square of `side` in the gutter whose centre is at `middle`.
    QRect symbol(int middle, int side) const;

private:
    const double factor_;
    const int width_;
};

// Places a child in its parent. In a right-to-left layout the place is mirrored.
void place(QWidget& child, const QRect& rect);

}  // namespace tarnik

#include "app/views/Grid.h"

#include <QFontInfo>
#include <QStyle>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace tarnik {
namespace {

constexpr double designSize = 13;
constexpr int symbolCentre = 12;  // from the left of the gutter

// A smaller font leaves more room instead of making the window smaller.
double factorOf(const QFont& font) {
    return std::max(1.0, QFontInfo(font).pixelSize() / designSize);
}

int rounded(double value) {
    return static_cast<int>(std::lround(value));
}

}  // namespace

Grid::Grid(const QFont& font, int width) : factor_(factorOf(font)), width_(width) {}

int Grid::scaled(int points) const {
    return rounded(points * factor_);
}

int Grid::scaled(const QFont& font, int points) {
    return rounded(points * factorOf(font));
}

QRect Grid::symbol(int middle, int side) const {
    return {margin + scaled(symbolCentre) - side / 2, middle - side / 2, side, side};
}

void place(QWidget& child, const QRect& rect) {
    const auto& parent = *child.parentWidget();
    child.setGeometry(QStyle::visualRect(parent.layoutDirection(), parent.rect(), rect));
}

}  // namespace tarnik

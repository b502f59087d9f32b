#include "app/views/StepsView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "app/views/Colours.h"
#include "app/views/Grid.h"
#include "app/views/QtText.h"
#include "app/views/TextLabel.h"
#include "app/views/VectorPath.h"

namespace tarnik {
namespace {

// In points.
constexpr double pictureHeight = 26;
constexpr double labelGap = 8;
constexpr double arrowLength = 35;
constexpr double arrowGap = 10;  // on each side, at least
constexpr double labelHeight = 16;

// One part of a picture. Pictures are drawn from (0, 0), and their middle is at half of `pictureHeight`.
struct Part {
    QColor (*colour)(const QPalette&);
    const char* path;
    double stroke;
};

struct Picture {
    double width;
    std::vector<Part> parts;
};

const std::array<Picture, 3>& pictures() {
    constexpr double outline = 1.6;
    constexpr double bold = 2.1;
    static const std::array<Picture, 3> all{{
        {29,
         {{secondaryColour,
           "M 4.3 2 L 24.7 2 C 26.5 2 28 3.5 28 5.3 L 28 14.7 C 28 16.5 26.5 18 24.7 18 L 13 18 L 7 23.5 "
           "L 7 18 L 4.3 18 C 2.5 18 1 16.5 1 14.7 L 1 5.3 C 1 3.5 2.5 2 4.3 2 Z",
           outline},
          {accentColour, "M 7 8 L 22 8 M 7 12.5 L 17 12.5", outline}}},
        {26,
         {{accentColour,
           "M 14.31 8.42 L 17.05 5.68 C 18.78 3.95 21.59 3.95 23.32 5.68 C 25.05 7.41 25.05 10.22 23.32 "
           "11.95 "
           "L 20.58 14.69 M 14.69 20.58 L 11.95 23.32 C 10.22 25.05 7.41 25.05 5.68 23.32 "
           "C 3.95 21.59 3.95 18.78 5.68 17.05 L 8.42 14.31 M 10.1 15.9 L 15.9 10.1",
           bold}}},
        {30,
         {{secondaryColour,
           "M 4 3.5 C 4 2.4 4.9 1.5 6 1.5 L 24 1.5 C 25.1 1.5 26 2.4 26 3.5 L 26 17.5 L 4 17.5 Z "
           "M 0.8 21.5 L 29.2 21.5",
           outline},
          {accentColour, "M 10.6 9.7 L 13.7 12.8 L 19.6 6.2", outline}}},
    }};
    return all;
}

constexpr const char* arrowHead = "M -3.5 -3.5 L 0 0 L -3.5 3.5";

QFont labelFont(const QFont& systemFont) {
    return TextLabel::fontOf(TextLabel::Role::quiet, systemFont);
}

void stroke(QPainter& painter, const QPainterPath& path, const QColor& colour, double width) {
    painter.strokePath(path, QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void drawArrow(QPainter& painter, double from, double to, double middle, const QColor& colour) {
    constexpr double weight = 1.4;
    QPainterPath path;
    path.moveTo(from, middle);
    path.lineTo(to, middle);
    path.addPath(vectorPath(arrowHead).translated(to, middle));
    stroke(painter, path, colour, weight);
}

}  // namespace

StepsView::StepsView(QWidget* parent) : QWidget(parent) {
    hide();
}

void StepsView::setSteps(const WindowContent::Steps& steps) {
    updateAccessibleName(*this, steps.accessibleName);
    for (std::size_t i = 0; i < labels_.size(); ++i) labels_[i] = qtText(steps.labels[i]);
    update();
}

// In points, for a left-to-right layout without gaps between the steps.
std::array<double, 3> StepsView::widths() const {
    const QFontMetricsF metrics(labelFont(font()));
    std::array<double, 3> widths{};
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const double label = metrics.horizontalAdvance(labels_[i]) / scale_;
        const double picture = pictures()[i].width;
        widths[i] = isStacked_ ? std::max(picture, label) : picture + labelGap + label;
    }
    return widths;
}

int StepsView::arrange(const Grid& grid) {
    constexpr int unit = 100;
    scale_ = grid.scaled(unit) / static_cast<double>(unit);
    isStacked_ = false;
    const auto beside = widths();
    const double needed = std::accumulate(beside.begin(), beside.end(), 2 * (arrowLength / 2 + 2 * arrowGap));
    isStacked_ = needed * scale_ > grid.columnWidth();
    const double height = isStacked_ ? pictureHeight + labelHeight : pictureHeight;
    return static_cast<int>(std::ceil(height * scale_));
}

// `left` and `width` are the place of the step, in points.
void StepsView::drawStep(QPainter& painter, std::size_t step, double left, double width) const {
    const Picture& picture = pictures()[step];
    const bool isReversed = layoutDirection() == Qt::RightToLeft;
    double pictureLeft = isReversed ? left + width - picture.width : left;
    QRectF label(isReversed ? left : left + picture.width + labelGap, 0, width - picture.width - labelGap,
                 pictureHeight);
    if (isStacked_) {
        pictureLeft = left + (width - picture.width) / 2;
        label = QRectF(left, pictureHeight, width, labelHeight);
    }
    painter.save();
    painter.translate(pictureLeft, 0);
    for (const auto& part : picture.parts)
        stroke(painter, vectorPath(part.path), part.colour(palette()), part.stroke);
    painter.restore();

    painter.save();
    painter.scale(1 / scale_, 1 / scale_);
    painter.setFont(labelFont(font()));
    painter.setPen(secondaryColour(palette()));
    painter.drawText(QRectF(label.topLeft() * scale_, label.size() * scale_),
                     Qt::AlignCenter | Qt::TextDontClip, labels_[step]);
    painter.restore();
}

// Draws in points. A right-to-left layout reverses the order and the arrows, but not the pictures.
void StepsView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale_, scale_);
    const bool isReversed = layoutDirection() == Qt::RightToLeft;
    const double full = width() / scale_;
    const auto steps = widths();
    const double between = (full - std::accumulate(steps.begin(), steps.end(), 0.0)) / 2;
    double left = 0;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        drawStep(painter, i, isReversed ? full - left - steps[i] : left, steps[i]);
        left += steps[i] + between;
    }

    if (isReversed) {
        painter.translate(full, 0);
        painter.scale(-1, 1);
    }
    const double length = std::min(arrowLength, between - 2 * labelGap);
    if (length <= 0) return;
    left = 0;
    for (const double step : {steps[0], steps[1]}) {
        const double middle = left + step + between / 2;
        drawArrow(painter, middle - length / 2, middle + length / 2, pictureHeight / 2,
                  lineColour(palette()));
        left += step + between;
    }
}

}  // namespace tarnik

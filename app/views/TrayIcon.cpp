#include "app/views/TrayIcon.h"

#include <QBuffer>
#include <QIcon>
#include <QPainter>
#include <algorithm>

#include "app/texts/MenuTexts.h"
#include "app/views/Colours.h"
#include "app/views/DrawnIcon.h"
#include "app/views/SymbolIcon.h"
#include "app/views/VectorPath.h"

namespace tarnik {
namespace {

// A disc or a ring.
struct Circle {
    QPointF centre;
    double radius;
    double stroke = 0;  // 0 fills the circle
};

// The three pictures on one grid. The edges of lines are on whole units. packaging/icons/menubar.svg has the
// small picture of a connected machine.
struct Drawing {
    int side;       // of the grid
    double stroke;  // of the letter and of the exclamation mark
    std::string_view letter;
    Circle dot;
    Circle ring;
    std::string_view line;  // of the exclamation mark
    Circle point;
};

const Drawing small{.side = 16,
                    .stroke = 2,
                    .letter = "M 6 2 L 6 10.5 C 6 12.433 7.567 14 9.5 14 L 10.5 14 M 3 6 L 9 6",
                    .dot = {QPointF(13, 3), 2},
                    .ring = {QPointF(13, 3), 2, 1.5},
                    .line = "M 13 2 L 13 7",
                    .point = {QPointF(13, 11), 1.25}};

const Drawing large{.side = 22,
                    .stroke = 3,
                    .letter =
                        "M 7.5 3.5 L 7.5 14 C 7.5 16.485 9.515 18.5 12 18.5 L 13.5 18.5 "
                        "M 3.5 8.5 L 12 8.5",
                    .dot = {QPointF(17.5, 4.5), 2.5},
                    .ring = {QPointF(17.5, 4.5), 3, 2},
                    .line = "M 17.5 3.5 L 17.5 10",
                    .point = {QPointF(17.5, 15), 1.75}};

// The drawing that is used for a picture, and its number of pixels per unit.
struct Fit {
    const Drawing& drawing;
    double scale;
};

// Uses a whole number of pixels per unit and leaves a margin, so that edges stay sharp: 18 is 16 and 24 is 22
// with a margin of 1.
Fit fitInto(int side) {
    if (side < small.side) return {.drawing = small, .scale = static_cast<double>(side) / small.side};
    const int smallScale = side / small.side;
    const int largeScale = side / large.side;
    // 48 is twice 24, not three times 16.
    const bool isNear = 10 * largeScale * large.side >= 9 * smallScale * small.side;
    return isNear ? Fit{.drawing = large, .scale = static_cast<double>(largeScale)}
                  : Fit{.drawing = small, .scale = static_cast<double>(smallScale)};
}

QPen penOf(double stroke) {
    return {brandColour(), stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintCircle(QPainter& painter, const Circle& circle) {
    QPainterPath path;
    path.addEllipse(circle.centre, circle.radius, circle.radius);
    if (circle.stroke > 0)
        painter.strokePath(path, penOf(circle.stroke));
    else
        painter.fillPath(path, brandColour());
}

void paintStatus(QPainter& painter, const Drawing& drawing, TrayStatus status) {
    painter.strokePath(vectorPath(drawing.letter), penOf(drawing.stroke));
    switch (status) {
        case TrayStatus::connected: return paintCircle(painter, drawing.dot);
        case TrayStatus::working: return paintCircle(painter, drawing.ring);
        case TrayStatus::needsYou:
            painter.strokePath(vectorPath(drawing.line), penOf(drawing.stroke));
            return paintCircle(painter, drawing.point);
    }
}

void paintIn(QPainter& painter, const QRect& rect, TrayStatus status) {
    const int side = std::min(rect.width(), rect.height());
    const auto [drawing, scale] = fitInto(side);
    const int margin = (side - static_cast<int>(drawing.side * scale)) / 2;
    const QPoint corner(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
    painter.translate(corner + QPoint(margin, margin));
    painter.scale(scale, scale);
    paintStatus(painter, drawing, status);
}

// Returns a null icon if the image file of the status doesn't exist.
QIcon pictureOf(TrayStatus status, const std::optional<std::string>& connectedImage) {
    if (connectedImage && status == TrayStatus::connected) return maskIcon(*connectedImage);
    auto icon = drawnIcon(
        [status](QPainter& painter, const QRect& rect, QIcon::Mode) { paintIn(painter, rect, status); },
        {16, 18, 22, 24, 32, 36, 44, 48, 64});
    icon.setIsMask(true);
    return icon;
}

}  // namespace

QIcon trayIcon(TrayStatus status, const std::optional<std::string>& connectedImage) {
    auto icon = pictureOf(status, connectedImage);
    return icon.isNull() ? wordIcon(MenuTexts::productWithoutImage) : icon;
}

NativeStatusItem::Picture statusPicture(TrayStatus status, const std::optional<std::string>& connectedImage) {
    NativeStatusItem::Picture picture;
    const auto icon = pictureOf(status, connectedImage);
    if (icon.isNull()) return picture;
    for (const double pixelsPerPoint : {1., 2.}) {
        QByteArray file;
        QBuffer buffer(&file);
        const QSize points(NativeStatusItem::pictureSide, NativeStatusItem::pictureSide);
        if (icon.pixmap(points, pixelsPerPoint).save(&buffer, "PNG")) picture.push_back(file.toStdString());
    }
    return picture;
}

}  // namespace tarnik

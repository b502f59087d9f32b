#include "app/views/SymbolIcon.h"

#include <QApplication>
#include <QIcon>
#include <QLinearGradient>
#include <QPainter>
#include <functional>
#include <optional>
#include <vector>

#include "app/model/WindowContent.h"
#include "app/views/Colours.h"
#include "app/views/DrawnIcon.h"
#include "app/views/QtText.h"
#include "app/views/VectorPath.h"

namespace tarnik {
namespace {

// A drawing in a square of `side` units.
struct Drawing {
    double side;
    std::function<void(QPainter&)> paint;
};

QIcon iconOf(const Drawing& drawing) {
    return drawnIcon(
        [drawing](QPainter& painter, const QRect& rect, QIcon::Mode mode) {
            const double side = std::min(rect.width(), rect.height());
            painter.translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
            painter.scale(side / drawing.side, side / drawing.side);
            if (mode == QIcon::Disabled) painter.setOpacity(0.45);
            drawing.paint(painter);
        },
        {16, 18, 22, 24, 32, 48, 64});
}

// Symbols are drawn in a square of 24 units. Their empty margin is cropped.
constexpr double symbolSide = 20.4;

// One part of a symbol.
struct Layer {
    QColor (*colour)(const QPalette&);
    std::string_view path;
    double stroke = 0;  // 0 fills the path
};

struct Symbol {
    std::string_view name;
    std::vector<Layer> layers;
};

QColor groundColour(const QPalette& palette) {
    return palette.color(QPalette::Window);
}

constexpr std::string_view disc =
    "M 22 12 C 22 17.52 17.52 22 12 22 C 6.48 22 2 17.52 2 12 C 2 6.48 6.48 2 12 2 C 17.52 2 22 6.48 22 12 Z";
constexpr std::string_view ring =
    "M 21.1 12 C 21.1 17.03 17.03 21.1 12 21.1 C 6.97 21.1 2.9 17.03 2.9 12 C 2.9 6.97 6.97 2.9 12 2.9 "
    "C 17.03 2.9 21.1 6.97 21.1 12 Z";
constexpr std::string_view check = "M 7.4 12.4 L 10.7 15.6 L 16.7 8.9";
constexpr std::string_view downArrow = "M 12 7.2 L 12 16.2 M 8.2 12.8 L 12 16.6 L 15.8 12.8";
// Two arrows in a circle: two arcs and their heads.
constexpr std::string_view arcs =
    "M 4.06 10.6 C 4.72 6.82 8.03 3.95 12 3.95 C 14.6 3.95 16.9 5.18 18.37 7.09 "
    "M 19.94 13.4 C 19.28 17.18 15.97 20.05 12 20.05 C 9.4 20.05 7.1 18.82 5.63 16.91";
constexpr std::string_view heads = "M 20.6 3.9 L 20.1 9.6 L 14.9 7.3 Z M 3.4 20.1 L 3.9 14.4 L 9.1 16.7 Z";
constexpr std::string_view triangle = "M 12 4.6 L 20.4 19.2 L 3.6 19.2 Z";
constexpr std::string_view exclamation = "M 12 9.6 L 12 13.6 M 12 16.6 L 12 16.65";
constexpr std::string_view tallExclamation = "M 12 7 L 12 13 M 12 16.7 L 12 16.75";
constexpr std::string_view longArrow = "M 12 4 L 12 19.4 M 5.8 13.4 L 12 19.6 L 18.2 13.4";
constexpr std::string_view laptop =
    "M 4.6 7 C 4.6 5.9 5.5 5 6.6 5 L 17.4 5 C 18.5 5 19.4 5.9 19.4 7 L 19.4 15.6 L 4.6 15.6 Z "
    "M 2.6 19.2 L 21.4 19.2";

const Symbol* symbolNamed(std::string_view name) {
    static const std::vector<Symbol> symbols{
        {SymbolName::checkmark, {{successColour, disc}, {groundColour, check, 2.3}}},
        {SymbolName::circle, {{lineColour, ring, 1.9}}},
        {SymbolName::arrows, {{accentColour, arcs, 2}, {accentColour, heads}, {accentColour, heads, 0.8}}},
        {SymbolName::download, {{accentColour, ring, 2}, {accentColour, downArrow, 2}}},
        {SymbolName::laptop, {{accentColour, laptop, 2}}},
        {SymbolName::pointer, {{accentColour, longArrow, 2}}},
        {SymbolName::refusal, {{errorColour, disc}, {groundColour, tallExclamation, 2.3}}},
        {SymbolName::warning,
         {{warningColour, triangle}, {warningColour, triangle, 3}, {groundColour, exclamation, 2.3}}},
    };
    for (const auto& symbol : symbols)
        if (symbol.name == name) return &symbol;
    return nullptr;
}

void paintLayer(QPainter& painter, const Layer& layer) {
    const QColor colour = layer.colour(QApplication::palette());
    const QPainterPath path = vectorPath(layer.path);
    if (layer.stroke > 0)
        painter.strokePath(path, QPen(colour, layer.stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    else
        painter.fillPath(path, colour);
}

// The side of the square around the outline in packaging/icons/mark.svg.
constexpr double markSide = 18;

QPainterPath mark() {
    return vectorPath(TARNIK_MARK_PATH);
}

void paintTile(QPainter& painter) {
    constexpr double side = 64;
    const QRectF tile(3, 3, side - 6, side - 6);
    QLinearGradient gradient(tile.topLeft(), tile.bottomLeft());
    gradient.setColorAt(0, QColor(0x1f, 0xa5, 0x94));
    gradient.setColorAt(1, QColor(0x0c, 0x5f, 0x75));
    QPainterPath outline;
    outline.addRoundedRect(tile, 14, 14);
    painter.fillPath(outline, gradient);

    constexpr double scale = 2.5;
    painter.translate((side - markSide * scale) / 2, (side - markSide * scale) / 2);
    painter.scale(scale, scale);
    painter.fillPath(mark(), Qt::white);
}

}  // namespace

QIcon symbolIcon(std::string_view name) {
    const Symbol* symbol = symbolNamed(name);
    if (!symbol) return {};
    return iconOf({.side = symbolSide, .paint = [symbol](QPainter& painter) {
                       painter.translate((symbolSide - 24) / 2, (symbolSide - 24) / 2);
                       for (const auto& layer : symbol->layers) paintLayer(painter, layer);
                   }});
}

QIcon applicationIcon() {
    return iconOf({.side = 64, .paint = paintTile});
}

QIcon maskIcon(const std::string& file) {
    QIcon icon(qtText(file));
    if (icon.availableSizes().isEmpty()) return {};
    icon.setIsMask(true);
    return icon;
}

QIcon wordIcon(std::string_view word) {
    auto icon = iconOf({.side = markSide, .paint = [text = qtText(word)](QPainter& painter) {
                            QFont font = QApplication::font();
                            font.setPixelSize(12);
                            font.setWeight(QFont::DemiBold);
                            painter.setFont(font);
                            painter.setPen(brandColour());
                            painter.drawText(QRectF(0, 0, markSide, markSide), Qt::AlignCenter, text);
                        }});
    icon.setIsMask(true);
    return icon;
}

}  // namespace tarnik

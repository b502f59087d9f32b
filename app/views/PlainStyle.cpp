#include "app/views/PlainStyle.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

namespace tarnik {
namespace {

constexpr double radius = 7;
constexpr double ringWidth = 2;
constexpr int buttonHeight = 32;
constexpr int buttonPadding = 14;  // on each side of the title
constexpr int fieldPadding = 8;
constexpr int frameWidth = 4;  // keeps contents out of the rounded corners
constexpr int scrollBarWidth = 12;
constexpr int minThumbLength = 28;

bool has(const QStyleOption& option, QStyle::State state) {
    return (option.state & state) == state;
}

// Draws a rounded box whose outline lies inside `rect`.
void drawBox(QPainter& painter, const QRectF& rect, const QBrush& fill, const QPen& line) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill);
    painter.setPen(line);
    const double inset = line.style() == Qt::NoPen ? 0 : line.widthF() / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

// The strengths of outlines. A control with text has a quiet outline. A control that is visible only by its
// outline has a clear outline.
constexpr double quietOutline = 0.26;
constexpr double clearOutline = 0.47;
constexpr double disabledOutline = 0.15;
constexpr double strongOutline = 0.8;  // for all enabled controls at higher contrast

QColor outline(const QPalette& palette, double share) {
    const bool isStrong = contrastOf(palette) == Contrast::higher && share > disabledOutline;
    return mixed(palette.color(QPalette::Active, QPalette::WindowText), palette.color(QPalette::Window),
                 isStrong ? strongOutline : share);
}

struct ButtonColours {
    QColor fill;
    QColor line;
};

ButtonColours buttonColours(const QStyleOptionButton& option) {
    const auto& palette = option.palette;
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    const bool isDefault = option.features.testFlag(QStyleOptionButton::DefaultButton);
    if (!has(option, QStyle::State_Enabled)) {
        const QColor fill = mixed(text, window, 0.06);
        return {fill, fill};
    }
    // A pressed button is tinted more than a hovered one.
    const double tint = has(option, QStyle::State_Sunken)      ? 0.14
                        : has(option, QStyle::State_MouseOver) ? 0.07
                                                               : 0;
    const QColor fill = palette.color(isDefault ? QPalette::Highlight : QPalette::Button);
    if (!isDefault) return {mixed(text, fill, tint), outline(palette, quietOutline)};
    // The tint increases the contrast to the title. A fill that resembles the window's colour gets an
    // outline.
    const bool isTitleLight = palette.color(QPalette::HighlightedText).lightness() > 127;
    const QColor tinted = mixed(isTitleLight ? Qt::black : Qt::white, fill, tint);
    const bool isFaint = contrastBetween(fill, window) < 3;
    return {tinted, isFaint ? outline(palette, clearOutline) : tinted};
}

void drawButton(const QStyleOptionButton& option, QPainter& painter) {
    const auto colours = buttonColours(option);
    const QRectF rect(option.rect);
    drawBox(painter, rect, colours.fill, QPen(colours.line, 1));
    if (!has(option, QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange)) return;
    // A gap in the window's colour makes the ring visible on a filled button.
    drawBox(painter, rect, Qt::NoBrush, QPen(accentColour(option.palette), ringWidth));
    drawBox(painter, rect.adjusted(ringWidth, ringWidth, -ringWidth, -ringWidth), Qt::NoBrush,
            QPen(option.palette.color(QPalette::Window), 1));
}

void drawField(const QStyleOption& option, double share, QPainter& painter) {
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool focused = has(option, QStyle::State_HasFocus);
    const QColor ground = option.palette.color(enabled ? QPalette::Base : QPalette::Window);
    const QPen line = focused ? QPen(accentColour(option.palette), ringWidth)
                              : QPen(outline(option.palette, enabled ? share : disabledOutline), 1);
    drawBox(painter, option.rect, ground, line);
}

void drawScrollThumb(const QStyleOptionComplex& option, const QRect& slider, QPainter& painter) {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
    if (!bar || bar->maximum <= bar->minimum) return;
    const bool isActive = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken);
    const QColor colour = mixed(option.palette.color(QPalette::WindowText),
                                option.palette.color(QPalette::Window), isActive ? 0.55 : 0.32);
    constexpr double inset = 3;
    const QRectF thumb = QRectF(slider).adjusted(inset, inset, -inset, -inset);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    const double round = std::min(thumb.width(), thumb.height()) / 2;
    painter.drawRoundedRect(thumb, round, round);
    painter.restore();
}

// Returns the thumb's rectangle in a scroll bar without arrows.
QRect thumbRect(const QStyleOptionSlider& bar) {
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const int length = isHorizontal ? bar.rect.width() : bar.rect.height();
    const int range = bar.maximum - bar.minimum;
    const double share = static_cast<double>(bar.pageStep) / std::max(1, range + bar.pageStep);
    const int thumb = std::min(length, std::max(minThumbLength, static_cast<int>(length * share)));
    const int place = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - thumb, bar.upsideDown);
    return isHorizontal ? QRect(bar.rect.x() + place, bar.rect.y(), thumb, bar.rect.height())
                        : QRect(bar.rect.x(), bar.rect.y() + place, bar.rect.width(), thumb);
}

}  // namespace

PlainStyle::PlainStyle() : QProxyStyle("Fusion") {}

QPalette PlainStyle::standardPalette() const {
    return paletteFor(Appearance::light);
}

void PlainStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option))
                return drawButton(*button, *painter);
            break;
        case PE_PanelLineEdit: return drawField(*option, clearOutline, *painter);
        case PE_Frame: return drawField(*option, quietOutline, *painter);
        case PE_FrameLineEdit:
        case PE_FrameFocusRect:  // drawButton draws a ring instead
        case PE_FrameDefaultButton: return;
        default: break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void PlainStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const auto* button =
        element == CE_PushButtonLabel ? qstyleoption_cast<const QStyleOptionButton*>(option) : nullptr;
    if (!button || !has(*button, State_Enabled) ||
        !button->features.testFlag(QStyleOptionButton::DefaultButton))
        return QProxyStyle::drawControl(element, option, painter, widget);
    QStyleOptionButton label(*button);
    label.palette.setBrush(QPalette::ButtonText, label.palette.brush(QPalette::HighlightedText));
    QProxyStyle::drawControl(element, &label, painter, widget);
}

void PlainStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
    if (control != CC_ScrollBar) return QProxyStyle::drawComplexControl(control, option, painter, widget);
    drawScrollThumb(*option, proxy()->subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
}

QSize PlainStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    if (type == CT_PushButton)
        return {size.width() + 2 * buttonPadding, std::max(buttonHeight, size.height() + 12)};
    if (type == CT_LineEdit) return {size.width() + 2 * fieldPadding, size.height() + 2 * fieldPadding};
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

QRect PlainStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                 const QWidget* widget) const {
    const auto* bar =
        control == CC_ScrollBar ? qstyleoption_cast<const QStyleOptionSlider*>(option) : nullptr;
    if (!bar) return QProxyStyle::subControlRect(control, option, part, widget);
    const QRect thumb = thumbRect(*bar);
    const bool isHorizontal = bar->orientation == Qt::Horizontal;
    QRect rect = bar->rect;
    switch (part) {
        case SC_ScrollBarSlider: return thumb;
        case SC_ScrollBarGroove: return rect;
        case SC_ScrollBarSubPage:
            isHorizontal ? rect.setRight(thumb.left() - 1) : rect.setBottom(thumb.top() - 1);
            return rect;
        case SC_ScrollBarAddPage:
            isHorizontal ? rect.setLeft(thumb.right() + 1) : rect.setTop(thumb.bottom() + 1);
            return rect;
        default: return {};
    }
}

int PlainStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_DefaultFrameWidth: return frameWidth;
        case PM_ScrollBarExtent: return scrollBarWidth;
        case PM_ScrollBarSliderMin: return minThumbLength;
        case PM_ScrollView_ScrollBarSpacing:
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical: return 0;
        default: return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int PlainStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
    if (hint == SH_ScrollView_FrameOnlyAroundContents) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void applyPlainStyle(Appearance appearance, const PaletteOptions& options) {
    if (!dynamic_cast<PlainStyle*>(QApplication::style())) QApplication::setStyle(new PlainStyle);
    QApplication::setPalette(paletteFor(appearance, options));
}

}  // namespace tarnik

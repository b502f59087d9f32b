#include "app/views/PlainStyle.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include "app/views/Grid.h"
#include "app/views/LinkField.h"
#include "app/views/VectorPath.h"

namespace tarnik {
namespace {

// In points.
constexpr double radius = 7;
constexpr double pillRadius = 4;
constexpr double ringWidth = 2;
constexpr int buttonHeight = 32;
constexpr int buttonPadding = 16;  // on each side of the title
constexpr int pillPadding = 12;
constexpr int minButtonWidth = 80;
constexpr int fieldPadding = 8;
constexpr int frameWidth = 4;  // keeps contents out of the rounded corners
constexpr int scrollBarWidth = 14;
constexpr int minThumbLength = 28;
constexpr int indicatorSide = 16;
constexpr int labelGap = 12;  // between a check box and its label
constexpr double indicatorRadius = 4;
constexpr int animationMilliseconds = 150;

bool has(const QStyleOption& option, QStyle::State state) {
    return (option.state & state) == state;
}

// Draws a rounded box whose outline lies inside `rect`.
void drawBox(QPainter& painter, const QRectF& rect, const QBrush& fill, const QPen& line, double round) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill);
    painter.setPen(line);
    const double inset = line.style() == Qt::NoPen ? 0 : line.widthF() / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), round - inset, round - inset);
    painter.restore();
}

QPen outline(const QPalette& palette) {
    return {lineColour(palette), static_cast<double>(lineWidth(palette))};
}

struct ButtonColours {
    QColor fill;
    QPen line;
    QColor text;
};

bool isDefault(const QStyleOptionButton& option) {
    return option.features.testFlag(QStyleOptionButton::DefaultButton);
}

// Returns true for a disabled button and for a default button that doesn't accept input yet.
bool looksDisabled(const QStyleOptionButton& option, const QWidget* widget) {
    const auto* button = dynamic_cast<const IntentButton*>(widget);
    return !has(option, QStyle::State_Enabled) || (isDefault(option) && button && button->isWaiting());
}

// Returns the share of the text's or the opposite colour that a pressed or hovered button gets.
double tintOf(const QStyleOption& option) {
    if (has(option, QStyle::State_Sunken)) return 0.14;
    return has(option, QStyle::State_MouseOver) ? 0.07 : 0;
}

ButtonColours buttonColours(const QStyleOptionButton& option, const QWidget* widget) {
    const auto& palette = option.palette;
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    if (looksDisabled(option, widget)) {
        const QColor ground = disabledGround(palette);
        const bool isHigher = contrastOf(palette) == Contrast::higher;
        return {ground, isHigher ? outline(palette) : QPen(ground, 1),
                palette.color(QPalette::Disabled, QPalette::ButtonText)};
    }
    const double tint = tintOf(option);
    if (option.features.testFlag(QStyleOptionButton::Flat))
        return {mixed(text, pillColour(palette), tint), QPen(Qt::NoPen), accentColour(palette)};
    const QColor fill = palette.color(isDefault(option) ? QPalette::Highlight : QPalette::Button);
    if (!isDefault(option)) return {mixed(text, fill, tint), outline(palette), text};
    // The tint increases the contrast to the title. A fill that resembles the window's colour, and
    // every fill at higher contrast, gets an outline.
    const QColor title = palette.color(QPalette::HighlightedText);
    const QColor tinted = mixed(title.lightness() > 127 ? Qt::black : Qt::white, fill, tint);
    const bool isFaint =
        contrastOf(palette) == Contrast::higher || contrastBetween(fill, palette.color(QPalette::Window)) < 3;
    return {tinted, isFaint ? outline(palette) : QPen(tinted, 1), title};
}

// The page draws the ring of the focus, because it lies outside of the button.
void drawButton(const QStyleOptionButton& option, QPainter& painter, const QWidget* widget) {
    const auto colours = buttonColours(option, widget);
    const bool isFlat = option.features.testFlag(QStyleOptionButton::Flat);
    drawBox(painter, option.rect, colours.fill, colours.line, isFlat ? pillRadius : radius);
}

void drawField(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    if (!has(option, QStyle::State_Enabled)) {
        const QColor ground = disabledGround(option.palette);
        return drawBox(painter, option.rect, ground, QPen(ground, 1), radius);
    }
    const auto* field = dynamic_cast<const LinkField*>(widget);
    QPen line = outline(option.palette);
    if (field && field->isRefused())
        line = QPen(errorColour(option.palette), ringWidth);
    else if (has(option, QStyle::State_HasFocus))
        line = QPen(accentColour(option.palette), ringWidth);
    drawBox(painter, option.rect, option.palette.color(QPalette::Base), line, radius);
}

// Draws the box of a check box: empty, with a tick, or with a dash.
void drawIndicator(const QStyleOption& option, QPainter& painter) {
    const QRectF rect(option.rect);
    const bool isOn = has(option, QStyle::State_On);
    const bool enabled = has(option, QStyle::State_Enabled);
    const auto& palette = option.palette;
    QColor fill = palette.color(isOn ? QPalette::Highlight : QPalette::Base);
    if (!enabled) fill = disabledGround(palette);
    drawBox(painter, rect, fill, isOn && enabled ? QPen(Qt::NoPen) : outline(palette), indicatorRadius);
    QColor mark = palette.color(isOn ? QPalette::HighlightedText : QPalette::WindowText);
    if (!enabled) mark = palette.color(QPalette::Disabled, QPalette::WindowText);
    QPainterPath path;
    if (isOn) path = vectorPath("M 3.8 8.2 L 6.7 11.1 L 12.2 4.9");
    if (has(option, QStyle::State_NoChange)) path = vectorPath("M 4.5 8 L 11.5 8");
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.topLeft());
    painter.scale(rect.width() / indicatorSide, rect.height() / indicatorSide);
    painter.strokePath(path, QPen(mark, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

void drawScrollThumb(const QStyleOptionComplex& option, const QRect& slider, QPainter& painter) {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
    if (!bar || bar->maximum <= bar->minimum) return;
    const bool isActive = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken);
    const QColor line = lineColour(option.palette);
    const QColor colour = isActive ? mixed(option.palette.color(QPalette::WindowText), line, 0.4) : line;
    constexpr double inset = 4;
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
        case PE_PanelLineEdit:
        case PE_Frame: return drawField(*option, *painter, widget);
        case PE_IndicatorCheckBox: return drawIndicator(*option, *painter);
        case PE_FrameLineEdit:
        case PE_FrameFocusRect:  // the page draws a ring instead
        case PE_FrameDefaultButton: return;
        default: break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void PlainStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const bool isButton = element == CE_PushButtonLabel || element == CE_PushButtonBevel;
    const auto* button = isButton ? qstyleoption_cast<const QStyleOptionButton*>(option) : nullptr;
    if (button && element == CE_PushButtonBevel) return drawButton(*button, *painter, widget);
    if (!button) return QProxyStyle::drawControl(element, option, painter, widget);
    QStyleOptionButton label(*button);
    label.palette.setBrush(QPalette::ButtonText, buttonColours(*button, widget).text);
    QProxyStyle::drawControl(element, &label, painter, widget);
}

void PlainStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
    if (control != CC_ScrollBar) return QProxyStyle::drawComplexControl(control, option, painter, widget);
    drawScrollThumb(*option, proxy()->subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
}

QSize PlainStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    const auto* button =
        type == CT_PushButton ? qstyleoption_cast<const QStyleOptionButton*>(option) : nullptr;
    if (button && button->features.testFlag(QStyleOptionButton::Flat))
        return {size.width() + 2 * pillPadding, size.height()};
    if (button)
        return {std::max(minButtonWidth, size.width() + 2 * buttonPadding),
                std::max(buttonHeight, size.height() + 12)};
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
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
            return Grid::scaled(widget ? widget->font() : QApplication::font(), indicatorSide);
        case PM_CheckBoxLabelSpacing: return labelGap;
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
    if (hint == SH_Widget_Animation_Duration) return motion_ == Motion::usual ? animationMilliseconds : 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void applyPlainStyle(Appearance appearance, const PaletteOptions& options, Motion motion) {
    auto* style = dynamic_cast<PlainStyle*>(QApplication::style());
    if (!style) {
        style = new PlainStyle;
        QApplication::setStyle(style);
    }
    style->setMotion(motion);
    QApplication::setPalette(paletteFor(appearance, options));
}

}  // namespace tarnik

#include "app/views/TextLabel.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "app/views/Colours.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int minWidth = 60;

// The font of a role, in multiples of the system font's size, and its line height in multiples of its own
// size.
struct Style {
    double size;
    double leading;
    QFont::Weight weight;
};

constexpr Style styleOf(TextLabel::Role role) {
    switch (role) {
        case TextLabel::Role::heading: return {1.3, 24.0 / 17, QFont::Bold};
        case TextLabel::Role::brand:
        case TextLabel::Role::strong: return {1, 18.0 / 13, QFont::Bold};
        case TextLabel::Role::body:
        case TextLabel::Role::label: return {1, 18.0 / 13, QFont::Normal};
        case TextLabel::Role::quiet: return {0.92, 16.0 / 12, QFont::Normal};
    }
    return {1, 1, QFont::Normal};
}

QColor textColour(const QPalette& palette) {
    return palette.color(QPalette::WindowText);
}

bool isQuiet(TextLabel::Role role) {
    return role == TextLabel::Role::brand || role == TextLabel::Role::quiet || role == TextLabel::Role::label;
}

// Breaks the text into lines and returns their total size.
QSizeF layOut(QTextLayout& layout, const QFont& font, int width, double lineHeight) {
    layout.setFont(font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(QApplication::layoutDirection());
    option.setAlignment(QStyle::visualAlignment(option.textDirection(), Qt::AlignLeading));
    layout.setTextOption(option);
    QSizeF size(0, 0);
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, size.height() + (lineHeight - line.height()) / 2));
        size = {std::max(size.width(), line.naturalTextWidth()), size.height() + lineHeight};
    }
    layout.endLayout();
    return size;
}

}  // namespace

TextLabel::TextLabel(Role role, QWidget* parent)
    : QLabel(parent),
      role_(role),
      roleFont_(fontOf(role, font())),
      colour_(isQuiet(role) ? &secondaryColour : &textColour) {
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    hide();
}

QFont TextLabel::fontOf(Role role, QFont systemFont) {
    const Style style = styleOf(role);
    if (systemFont.pointSizeF() > 0)
        systemFont.setPointSizeF(systemFont.pointSizeF() * style.size);
    else
        systemFont.setPixelSize(static_cast<int>(std::lround(systemFont.pixelSize() * style.size)));
    systemFont.setWeight(style.weight);
    return systemFont;
}

void TextLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) roleFont_ = fontOf(role_, font());
    QLabel::changeEvent(event);  // requests a new layout
}

void TextLabel::setPlainText(std::string_view text) {
    if (const QString shown = qtText(text); shown != this->text()) setText(shown);
    setVisible(!text.empty());
}

void TextLabel::setColour(QColor (*colour)(const QPalette&)) {
    if (colour == colour_) return;
    colour_ = colour;
    update();
}

int TextLabel::lineHeight() const {
    return std::max(QFontMetrics(roleFont_).height(),
                    static_cast<int>(std::lround(QFontInfo(roleFont_).pixelSize() * styleOf(role_).leading)));
}

QSizeF TextLabel::measure(int width) const {
    const int line = lineHeight();
    const auto fits = [&](const Measurement& known) {
        return known.width == width && known.lineHeight == line && known.text == text() &&
               known.font == roleFont_;
    };
    if (const auto known = std::ranges::find_if(measurements_, fits); known != measurements_.end())
        return known->size;
    QTextLayout layout(text().replace('\n', QChar::LineSeparator));
    const QSizeF size = layOut(layout, roleFont_, width, line);
    std::ranges::rotate(measurements_, measurements_.end() - 1);
    measurements_.front() = {
        .text = text(), .font = roleFont_, .width = width, .lineHeight = line, .size = size};
    return size;
}

QSize TextLabel::textSize(int width) const {
    const QSizeF size = measure(width);
    return {static_cast<int>(std::ceil(size.width())),
            static_cast<int>(std::ceil(size.height())) + contentsMargins().top()};
}

QSize TextLabel::sizeHint() const {
    return textSize(QWIDGETSIZE_MAX);
}

QSize TextLabel::minimumSizeHint() const {
    return {std::min(minWidth, sizeHint().width()), lineHeight()};
}

int TextLabel::heightForWidth(int width) const {
    return textSize(width).height();
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(colour_(palette()));
    QTextLayout layout(this->text().replace('\n', QChar::LineSeparator));
    layOut(layout, roleFont_, width(), lineHeight());
    layout.draw(&painter, QPointF(0, contentsMargins().top()));
}

}  // namespace tarnik

#include "app/views/TextLabel.h"

#include <QFontInfo>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "app/views/Colours.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

// The line height in multiples of the font size. Fonts of the same size request very different line heights.
constexpr double leading = 1.38;
constexpr int minWidth = 60;

QFont fontFor(TextLabel::Role role, QFont font) {
    const auto resize = [&font](double factor) {
        if (font.pointSizeF() > 0)
            font.setPointSizeF(font.pointSizeF() * factor);
        else
            font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * factor)));
    };
    switch (role) {
        case TextLabel::Role::brand:
            resize(1.15);
            font.setWeight(QFont::DemiBold);
            break;
        case TextLabel::Role::heading:
            resize(1.3);
            font.setWeight(QFont::DemiBold);
            break;
        case TextLabel::Role::strong: font.setWeight(QFont::DemiBold); break;
        case TextLabel::Role::body: break;
        case TextLabel::Role::quiet: resize(QFontInfo(font).pixelSize() > 13 ? 0.9 : 0.95); break;
    }
    return font;
}

// Breaks the text into lines and returns their total size.
QSizeF layOut(QTextLayout& layout, const QFont& font, int width, double lineHeight) {
    layout.setFont(font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QSizeF size;
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

TextLabel::TextLabel(Role role, QWidget* parent) : QLabel(parent), role_(role) {
    setTextFormat(Qt::PlainText);
    setFont(fontFor(role, font()));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    hide();
}

void TextLabel::setPlainText(std::string_view text) {
    if (const QString shown = qtText(text); shown != this->text()) setText(shown);
    setVisible(!text.empty());
}

int TextLabel::lineHeight() const {
    const int fontSize = QFontInfo(font()).pixelSize();
    return std::max(fontMetrics().height(), static_cast<int>(std::lround(fontSize * leading)));
}

QSizeF TextLabel::measure(int width) const {
    const auto fits = [&](const Measurement& known) {
        return known.width == width && known.text == text() && known.font == font();
    };
    if (const auto known = std::ranges::find_if(measurements_, fits); known != measurements_.end())
        return known->size;
    QTextLayout layout(text().replace('\n', QChar::LineSeparator));
    const QSizeF size = layOut(layout, font(), width, lineHeight());
    std::ranges::rotate(measurements_, measurements_.end() - 1);
    measurements_.front() = {.text = text(), .font = font(), .width = width, .size = size};
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
    const QColor text = palette().color(QPalette::WindowText);
    painter.setPen(role_ == Role::quiet ? secondaryColour(palette()) : text);
    QTextLayout layout(this->text().replace('\n', QChar::LineSeparator));
    layOut(layout, font(), width(), lineHeight());
    layout.draw(&painter, QPointF(0, contentsMargins().top()));
}

}  // namespace tarnik

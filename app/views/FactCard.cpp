#include "app/views/FactCard.h"

#include <QPainter>
#include <algorithm>

#include "app/views/Colours.h"
#include "app/views/Grid.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

constexpr double radius = 8;
constexpr int verticalPadding = 8;
constexpr int sidePadding = 12;
constexpr int rowHeight = 28;
constexpr int valueLeft = 124;  // in the card

}  // namespace

FactCard::FactCard(QWidget* parent) : QWidget(parent) {
    hide();
}

void FactCard::setCard(const WindowContent::Card& card) {
    while (rows_.size() < card.rows.size())
        rows_.push_back(
            {new TextLabel(TextLabel::Role::label, this), new TextLabel(TextLabel::Role::body, this)});
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const bool isUsed = i < card.rows.size();
        rows_[i].label->setPlainText(isUsed ? card.rows[i].label : std::string());
        rows_[i].value->setPlainText(isUsed ? card.rows[i].value : std::string());
    }
}

int FactCard::arrange(const Grid& grid) {
    const int width = grid.columnWidth();
    int left = grid.scaled(valueLeft);
    for (const auto& row : rows_)
        left = std::max(left, sidePadding + row.label->sizeHint().width() + sidePadding);
    left = std::min(left, width / 2);
    int top = grid.scaled(verticalPadding);
    resize(width, height());
    for (const auto& row : rows_) {
        if (row.label->isHidden()) continue;
        const int labelHeight = row.label->heightForWidth(left - 2 * sidePadding);
        const int valueHeight = row.value->heightForWidth(width - left - sidePadding);
        const int lineMargin = grid.scaled(rowHeight) - row.label->lineHeight();
        place(*row.label, {sidePadding, top + lineMargin / 2, left - 2 * sidePadding, labelHeight});
        place(*row.value, {left, top + lineMargin / 2, width - left - sidePadding, valueHeight});
        top += std::max(labelHeight, valueHeight) + lineMargin;
    }
    return top + grid.scaled(verticalPadding);
}

void FactCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(cardColour(palette()));
    painter.drawRoundedRect(rect(), radius, radius);
}

}  // namespace tarnik

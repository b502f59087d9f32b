#include "app/views/SwitchRowView.h"

#include <algorithm>

#include "app/views/Grid.h"
#include "app/views/SymbolView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

// In points.
constexpr int symbolSide = 16;
constexpr int buttonHeight = 28;
constexpr int descriptionWidth = 272;
constexpr int buttonGap = 12;

}  // namespace

// Creates the children in the order in which screen readers read them.
SwitchRowView::SwitchRowView(OnButton onButton, QWidget* parent)
    : QWidget(parent),
      symbol_(new SymbolView(this)),
      title_(new TextLabel(TextLabel::Role::strong, this)),
      description_(new TextLabel(TextLabel::Role::quiet, this)),
      button_(new IntentButton(std::move(onButton), this)),
      hint_(new TextLabel(TextLabel::Role::quiet, this)) {}

void SwitchRowView::setRow(const WindowContent::SwitchRow& row) {
    symbol_->setSymbol(row.symbol);
    title_->setPlainText(row.title);
    description_->setPlainText(row.description);
    if (row.button) button_->setButton(*row.button);
    button_->setVisible(row.button.has_value());
    hint_->setPlainText(row.hint.value_or(std::string()));
}

int SwitchRowView::arrange(const Grid& grid) {
    resize(parentWidget()->width(), height());
    const int left = grid.columnLeft();
    const int buttonWidth = button_->sizeHint().width();
    const int width =
        std::min(grid.scaled(descriptionWidth), grid.columnWidth() - buttonWidth - grid.scaled(buttonGap));
    const int line = title_->lineHeight();
    place(*symbol_, grid.symbol(line / 2 + 1, grid.scaled(symbolSide)));
    place(*title_, {left, 0, width, title_->heightForWidth(width)});
    const int textTop = title_->heightForWidth(width);
    const int text = description_->heightForWidth(width);
    place(*description_, {left, textTop, width, text});
    const int buttonSide = grid.scaled(buttonHeight);
    const int middle = (textTop + text) / 2;
    place(*button_,
          {left + grid.columnWidth() - buttonWidth, middle - buttonSide / 2, buttonWidth, buttonSide});
    int end = std::max(textTop + text, middle + buttonSide / 2);
    if (!hint_->isHidden()) {
        const int hint = hint_->heightForWidth(grid.columnWidth());
        const int hintTop = end + Grid::gap;
        place(*hint_, grid.column(hintTop, hint));
        end = hintTop + hint;
    }
    return end;
}

}  // namespace tarnik

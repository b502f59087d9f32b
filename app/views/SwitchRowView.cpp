#include "app/views/SwitchRowView.h"

#include <QGridLayout>

#include "app/views/SymbolView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

constexpr int symbolSide = 17;
constexpr int columnGap = 10;
constexpr int hintGap = 6;

}  // namespace

SwitchRowView::SwitchRowView(OnButton onButton, QWidget* parent)
    : QWidget(parent),
      title_(new TextLabel(TextLabel::Role::strong, this)),
      symbol_(new SymbolView(symbolSide, title_->lineHeight(), this)),
      description_(new TextLabel(TextLabel::Role::quiet, this)),
      button_(new IntentButton(std::move(onButton), this)),
      hint_(new TextLabel(TextLabel::Role::quiet, this)) {
    symbol_->lower();  // so that screen readers read the symbol first
    hint_->setContentsMargins(0, hintGap, 0, 0);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(columnGap);
    grid->setVerticalSpacing(0);
    grid->setColumnStretch(1, 1);
    grid->addWidget(symbol_, 0, 0, Qt::AlignTop);
    grid->addWidget(title_, 0, 1);
    grid->addWidget(description_, 1, 1);
    grid->addWidget(button_, 0, 2, 2, 1, Qt::AlignVCenter);
    grid->addWidget(hint_, 2, 1, 1, 2);
}

void SwitchRowView::setRow(const WindowContent::SwitchRow& row) {
    symbol_->setSymbol(row.symbol);
    title_->setPlainText(row.title);
    description_->setPlainText(row.description);
    if (row.button) button_->setButton(*row.button);
    button_->setVisible(row.button.has_value());
    hint_->setPlainText(row.hint.value_or(std::string()));
}

}  // namespace tarnik

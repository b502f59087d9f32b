#include "app/views/MessageView.h"

#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "app/views/Colours.h"
#include "app/views/Grid.h"
#include "app/views/QtText.h"
#include "app/views/SymbolView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

using Kind = WindowContent::Message::Kind;

constexpr int symbolSide = 16;

QColor plainColour(const QPalette& palette) {
    return palette.color(QPalette::WindowText);
}

WindowContent::Symbol named(std::string_view symbol, std::string_view accessibleName) {
    return {.name = std::string(symbol), .accessibleName = translated(accessibleName)};
}

std::optional<WindowContent::Symbol> symbolOf(Kind kind) {
    switch (kind) {
        case Kind::news: return std::nullopt;
        case Kind::refusal: return named(SymbolName::refusal, WindowTexts::problemName);
        case Kind::pointer: return named(SymbolName::pointer, WindowTexts::pointerName);
    }
    return std::nullopt;
}

}  // namespace

MessageView::MessageView(QWidget* parent)
    : QWidget(parent), symbol_(new SymbolView(this)), text_(new TextLabel(TextLabel::Role::body, this)) {
    hide();
}

void MessageView::setMessage(const std::optional<WindowContent::Message>& message) {
    setVisible(message.has_value());
    if (!message) return;
    std::string text = message->text;
    if (message->cause) text.append("\n").append(*message->cause);
    text_->setPlainText(text);
    text_->setColour(message->kind == Kind::refusal ? &errorColour : &plainColour);
    const auto symbol = symbolOf(message->kind);
    symbol_->setVisible(symbol.has_value());
    if (symbol) symbol_->setSymbol(*symbol);
}

int MessageView::arrange(const Grid& grid) {
    const int height = text_->heightForWidth(grid.columnWidth());
    resize(parentWidget()->width(), height);
    place(*text_, grid.column(0, height));
    place(*symbol_, grid.symbol(text_->lineHeight() / 2, grid.scaled(symbolSide)));
    return height;
}

}  // namespace tarnik

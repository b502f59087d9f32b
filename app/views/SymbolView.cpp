#include "app/views/SymbolView.h"

#include <QPainter>

#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {
namespace {

constexpr int lift = 1;  // the optical centre of text is above the middle of its line

}  // namespace

SymbolView::SymbolView(int side, int lineHeight, QWidget* parent) : QLabel(parent), side_(side) {
    setFixedSize(side, std::max(side, lineHeight));
}

void SymbolView::setSymbol(const WindowContent::Symbol& symbol) {
    updateAccessibleName(*this, symbol.accessibleName);
    if (symbol.name == name_) return;
    name_ = symbol.name;
    icon_ = symbolIcon(name_);
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    icon_.paint(&painter, 0, std::max(0, (height() - side_) / 2 - lift), side_, side_);
}

}  // namespace tarnik

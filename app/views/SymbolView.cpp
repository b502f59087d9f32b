#include "app/views/SymbolView.h"

#include <QPainter>

#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {

void SymbolView::setSymbol(const WindowContent::Symbol& symbol) {
    updateAccessibleName(*this, symbol.accessibleName);
    if (symbol.name == name_) return;
    name_ = symbol.name;
    icon_ = symbolIcon(name_);
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

}  // namespace tarnik

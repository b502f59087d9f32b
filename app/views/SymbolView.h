#pragma once

#include <QIcon>
#include <QLabel>

#include "app/model/WindowContent.h"

namespace tarnik {

// A symbol with an accessible name, vertically centred on the line of text beside it.
class SymbolView : public QLabel {
public:
    SymbolView(int side, int lineHeight, QWidget* parent = nullptr);

    void setSymbol(const WindowContent::Symbol& symbol);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const int side_;
    std::string_view name_;
    QIcon icon_;
};

}  // namespace tarnik

#pragma once

#include <QIcon>
#include <QLabel>

#include "app/model/WindowContent.h"

namespace tarnik {

// A symbol with an accessible name. It fills the widget.
class SymbolView : public QLabel {
public:
    explicit SymbolView(QWidget* parent = nullptr) : QLabel(parent) {}

    void setSymbol(const WindowContent::Symbol& symbol);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string name_;
    QIcon icon_;
};

}  // namespace tarnik

#pragma once

#include <QIcon>
#include <QLabel>

#include "app/model/WindowContent.h"

namespace tarnik {

// A symbol with its name, in the middle of the height of the line it stands beside.
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

#pragma once

#include <QWidget>

#include "app/views/ButtonRow.h"

namespace tarnik {

class Grid;
class SymbolView;
class TextLabel;

// A row of the switches section: symbol, title, description and button. The description is as wide without
// the button, so the row keeps its height.
class SwitchRowView : public QWidget {
public:
    SwitchRowView(OnButton onButton, QWidget* parent);

    void setRow(const WindowContent::SwitchRow& row);

    // Places the children and returns the height. The widget is as wide as the page.
    int arrange(const Grid& grid);

    IntentButton* button() const { return button_; }

private:
    // Children.
    SymbolView* symbol_;
    TextLabel* title_;
    TextLabel* description_;
    IntentButton* button_;
    TextLabel* hint_;
};

}  // namespace tarnik

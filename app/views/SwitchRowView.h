#pragma once

#include <QWidget>

#include "app/views/ButtonRow.h"

namespace tarnik {

class SymbolView;
class TextLabel;

// One switch: whether it is on, what it is good for, and a button that leads to it.
class SwitchRowView : public QWidget {
public:
    SwitchRowView(OnButton onButton, QWidget* parent);

    void setRow(const WindowContent::SwitchRow& row);

    IntentButton* button() const { return button_; }  // hidden while there is nothing to do

private:
    // Children.
    TextLabel* title_;
    SymbolView* symbol_;
    TextLabel* description_;
    IntentButton* button_;
    TextLabel* hint_;
};

}  // namespace tarnik

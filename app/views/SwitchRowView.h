#pragma once

#include <QWidget>

#include "app/views/ButtonRow.h"

namespace tarnik {

class SymbolView;
class TextLabel;

// One switch: its state, a description, and a button to turn it on.
class SwitchRowView : public QWidget {
public:
    SwitchRowView(OnButton onButton, QWidget* parent);

    void setRow(const WindowContent::SwitchRow& row);

    IntentButton* button() const { return button_; }  // hidden if the row has no button

private:
    // Children.
    TextLabel* title_;
    SymbolView* symbol_;
    TextLabel* description_;
    IntentButton* button_;
    TextLabel* hint_;
};

}  // namespace tarnik

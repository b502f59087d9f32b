#pragma once

#include <QWidget>
#include <vector>

#include "app/views/ButtonRow.h"

namespace tarnik {

class SwitchRowView;
class TextLabel;

// The lower half of the window: an explanation of the switches, and a row for each.
class SwitchesSection : public QWidget {
public:
    SwitchesSection(OnButton onButton, QWidget* parent);

    // Returns true if the controls differ from the previous ones.
    bool setContent(const WindowContent::Switches& content);

    std::vector<QWidget*> controls() const;  // in tab order

private:
    const OnButton onButton_;
    TextLabel* heading_;  // a child, like those below
    TextLabel* text_;
    QWidget* list_;
    std::vector<SwitchRowView*> rows_;
};

}  // namespace tarnik

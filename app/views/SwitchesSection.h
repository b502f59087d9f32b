#pragma once

#include <QWidget>
#include <vector>

#include "app/views/ButtonRow.h"

namespace tarnik {

class Grid;
class SwitchRowView;
class TextLabel;

// The lower part of the window: an explanation of the switches and a row for each switch.
class SwitchesSection : public QWidget {
public:
    SwitchesSection(OnButton onButton, QWidget* parent);

    void setContent(const WindowContent::Switches& content);

    // Places the children and returns the height. The widget is as wide as the page.
    int arrange(const Grid& grid);

    std::vector<QWidget*> controls() const;  // in tab order

private:
    const OnButton onButton_;
    TextLabel* heading_;  // a child; the widgets below are also children
    TextLabel* text_;
    std::vector<SwitchRowView*> rows_;
};

}  // namespace tarnik

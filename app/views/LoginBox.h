#pragma once

#include <QCheckBox>

#include "app/views/ButtonRow.h"

namespace tarnik {

class Grid;

// The check box for the start at login. A click only reports the intent: the box shows what the system says.
class LoginBox : public QCheckBox {
public:
    LoginBox(OnButton onButton, QWidget* parent);

    void setBox(const std::optional<WindowContent::CheckBox>& box);

    // Places the box at `top` of the parent, with its indicator in the gutter. Returns its end.
    int arrange(const Grid& grid, int top);

protected:
    void nextCheckState() override {}  // the next content sets the state

private:
    UserIntent intent_;
};

}  // namespace tarnik

#pragma once

#include <QWidget>
#include <vector>

#include "app/views/IntentButton.h"

namespace tarnik {

class Grid;

// A row of buttons. The default button ends at the end of the column, all others begin at its start. So
// Cancel never appears under a pointer that has just clicked a default button, and no default button under
// one that has clicked Cancel. While an intent remains in the content, its button remains the same widget.
class ButtonRow : public QWidget {
public:
    ButtonRow(OnButton onButton, QWidget* parent);

    void setButtons(const std::vector<WindowContent::Button>& buttons);

    // Places the row at `top` of the parent and returns its end. If the buttons don't fit beside each other,
    // the default button keeps its place and the others form rows above it, from `earliest` on.
    int arrange(const Grid& grid, int top, int earliest);

    const std::vector<IntentButton*>& buttons() const { return buttons_; }
    std::vector<IntentButton*> inTabOrder() const;          // the default button first
    IntentButton* buttonFor(WindowContent::Key key) const;  // returns nullptr if no button has the key

private:
    IntentButton* takeOrMake(const UserIntent& intent, std::vector<IntentButton*>& from);

    const OnButton onButton_;
    std::vector<IntentButton*> buttons_;  // children, in the order of the content
};

}  // namespace tarnik

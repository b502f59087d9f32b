#pragma once

#include <QElapsedTimer>
#include <QPushButton>
#include <functional>
#include <vector>

#include "app/model/WindowContent.h"

namespace tarnik {

class Grid;

using OnButton = std::function<void(const UserIntent&)>;

// A button that reports its intent. It waits for one double-click interval after it appears and ignores input
// meanwhile, because the user may have aimed the click or key at the previous button. A button with only the
// cancel key doesn't wait. A waiting default button keeps the focus, but is drawn as disabled.
class IntentButton : public QPushButton {
public:
    IntentButton(OnButton onButton, QWidget* parent);

    void setButton(const WindowContent::Button& button);

    const UserIntent& intent() const { return intent_; }
    bool isFor(WindowContent::Key key) const;  // `key` is defaultKey or cancelKey
    bool acceptsInput() const;
    bool isWaiting() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QElapsedTimer shown_;  // since the button became visible
    UserIntent intent_;
    WindowContent::Key key_ = WindowContent::Key::none;
};

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

#pragma once

#include <QElapsedTimer>
#include <QPushButton>
#include <functional>
#include <vector>

#include "app/model/WindowContent.h"

class QBoxLayout;

namespace tarnik {

using OnButton = std::function<void(const UserIntent&)>;

// A button that reports its intent. It ignores input for one double-click interval after it appears, because
// the user may have aimed the click or key at the previous button. A button with only the cancel key doesn't
// wait.
class IntentButton : public QPushButton {
public:
    IntentButton(OnButton onButton, QWidget* parent);

    void setButton(const WindowContent::Button& button);

    const UserIntent& intent() const { return intent_; }
    bool isFor(WindowContent::Key key) const;  // `key` is defaultKey or cancelKey
    bool acceptsInput() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QElapsedTimer shown_;  // since the button became visible
    UserIntent intent_;
    WindowContent::Key key_ = WindowContent::Key::none;
};

// A row of buttons. Cancel is always the rightmost button, even when it is the only one. So no other button
// appears under a pointer that has just clicked Cancel. While an intent remains in the content, its button
// remains the same widget.
class ButtonRow : public QWidget {
public:
    // If the buttons need more than `width`, they are stacked with Cancel at the bottom.
    ButtonRow(int width, OnButton onButton, QWidget* parent);

    // Returns true if the set or the order of the widgets changed.
    bool setButtons(const std::vector<WindowContent::Button>& buttons);

    const std::vector<IntentButton*>& buttons() const { return buttons_; }
    IntentButton* buttonFor(WindowContent::Key key) const;  // returns nullptr if no button has the key

private:
    IntentButton* takeOrMake(const UserIntent& intent, std::vector<IntentButton*>& from);
    void arrange();

    const int width_;
    const OnButton onButton_;
    QBoxLayout* layout_;                  // a child
    std::vector<IntentButton*> buttons_;  // children, in the order of the content
};

}  // namespace tarnik

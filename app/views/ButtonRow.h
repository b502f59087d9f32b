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
// a click or key may have been meant for its predecessor. An enabled cancel button always reacts.
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

// A row of buttons. Cancel is always the rightmost button, even when it is the only one, so no other button
// appears under a pointer that just clicked it. A button remains the same widget while its intent is offered.
class ButtonRow : public QWidget {
public:
    // Buttons that need more than `width` are stacked.
    ButtonRow(int width, OnButton onButton, QWidget* parent);

    // Returns true if the set or the order of the widgets changed.
    bool setButtons(const std::vector<WindowContent::Button>& buttons);

    const std::vector<IntentButton*>& buttons() const { return buttons_; }
    IntentButton* buttonFor(WindowContent::Key key) const;  // may be null

private:
    IntentButton* takeOrMake(const UserIntent& intent, std::vector<IntentButton*>& from);
    void arrange();

    const int width_;
    const OnButton onButton_;
    QBoxLayout* layout_;                  // a child
    std::vector<IntentButton*> buttons_;  // children, in the order of the content
};

}  // namespace tarnik

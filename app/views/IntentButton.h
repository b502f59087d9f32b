#pragma once

#include <QElapsedTimer>
#include <QPushButton>
#include <functional>

#include "app/model/WindowContent.h"

namespace tarnik {

using OnButton = std::function<void(const UserIntent&)>;

// A button that reports its intent. It waits for one double-click interval after it appears and ignores input
// meanwhile, because the user may have aimed the click or key at the previous button. A button with only the
// cancel key doesn't wait. A waiting button keeps the focus, but screen readers report it as disabled, and a
// default button is drawn so.
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
    void reportState();

    QElapsedTimer shown_;  // since the button became visible
    UserIntent intent_;
    WindowContent::Key key_ = WindowContent::Key::none;
};

}  // namespace tarnik

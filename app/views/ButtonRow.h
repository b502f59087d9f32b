#pragma once

#include <QElapsedTimer>
#include <QPushButton>
#include <functional>
#include <vector>

#include "app/model/WindowContent.h"

class QBoxLayout;

namespace tarnik {

using OnButton = std::function<void(const WindowIntent&)>;

// A button that knows what is asked for with it. One that has just come to be there doesn't take for its own
// what was meant for something else, such as the second of two quick clicks; what takes back always works.
class IntentButton : public QPushButton {
public:
    IntentButton(OnButton onButton, QWidget* parent);

    void setButton(const WindowContent::Button& button);

    const WindowIntent& intent() const { return intent_; }
    bool isFor(WindowContent::Key key) const;  // the default or the cancel key
    bool isReady() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QElapsedTimer shown_;  // since it can be seen
    WindowIntent intent_;
    WindowContent::Key key_ = WindowContent::Key::none;
};

// The buttons under a text. What takes back stands at the far end of the row, by itself or not: so nothing
// comes to lie under a pointer that has just clicked. A button stays the same widget while its intent is
// offered.
class ButtonRow : public QWidget {
public:
    ButtonRow(int width, OnButton onButton, QWidget* parent);

    // Whether there are other widgets than before.
    bool setButtons(const std::vector<WindowContent::Button>& buttons);

    const std::vector<IntentButton*>& buttons() const { return buttons_; }
    IntentButton* buttonFor(WindowContent::Key key) const;  // null where there is none

private:
    IntentButton* take(const WindowIntent& intent, std::vector<IntentButton*>& from);
    void arrange();

    const int width_;
    const OnButton onButton_;
    QBoxLayout* layout_;                  // a child
    std::vector<IntentButton*> buttons_;  // children, in the order of the content
};

}  // namespace tarnik

#pragma once

#include <QWidget>

namespace tarnik {

// A ring around the focused button or check box of a page, drawn 2 points outside of it. Shown after the user
// has used the keyboard. Fields and text boxes show the focus by their own border.
class FocusRing : public QWidget {
public:
    explicit FocusRing(QWidget* page);

    // Call it after widgets of the page have moved.
    void update();

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnik

#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

namespace tarnik {

// Fades from the previous picture of a widget to its new contents. Shows the change at once if the style has
// no animations, or if the previous change was just before. Such a change also ends the previous fade.
class Fade {
public:
    explicit Fade(QWidget& widget) : widget_(widget) {}

    // Call it before the widget changes. The fade starts when the event loop runs next.
    void start();

private:
    QWidget& widget_;
    QPointer<QWidget> overlay_;  // a child of the widget's parent while it fades
    QElapsedTimer lastChange_;
};

}  // namespace tarnik

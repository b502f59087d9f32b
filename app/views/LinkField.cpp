#include "app/views/LinkField.h"

#include <QApplication>
#include <QEvent>

namespace tarnik {
namespace {

constexpr int restAfterMs = 10'000;
constexpr int asTheDesktopHasIt = -1;

bool isUse(QEvent::Type type) {
    return type == QEvent::FocusIn || type == QEvent::KeyPress || type == QEvent::InputMethod ||
           type == QEvent::MouseButtonPress;
}

}  // namespace

LinkField::LinkField(QWidget* parent) : QLineEdit(parent) {
    rest_.setSingleShot(true);
    rest_.setInterval(restAfterMs);
    connect(&rest_, &QTimer::timeout, this, [] { QApplication::setCursorFlashTime(0); });
}

bool LinkField::event(QEvent* event) {
    if (isUse(event->type())) {
        QApplication::setCursorFlashTime(asTheDesktopHasIt);
        rest_.start();
    }
    return QLineEdit::event(event);
}

}  // namespace tarnik

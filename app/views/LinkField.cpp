#include "app/views/LinkField.h"

#include <QApplication>
#include <QEvent>

namespace tarnik {
namespace {

constexpr int inputTimeoutMs = 10'000;
constexpr int desktopRate = -1;

bool isInput(QEvent::Type type) {
    return type == QEvent::FocusIn || type == QEvent::KeyPress || type == QEvent::InputMethod ||
           type == QEvent::MouseButtonPress;
}

}  // namespace

LinkField::LinkField(QWidget* parent) : QLineEdit(parent) {
    inputTimeout_.setSingleShot(true);
    inputTimeout_.setInterval(inputTimeoutMs);
    connect(&inputTimeout_, &QTimer::timeout, this, [] { QApplication::setCursorFlashTime(0); });
}

bool LinkField::event(QEvent* event) {
    if (isInput(event->type())) {
        QApplication::setCursorFlashTime(desktopRate);
        inputTimeout_.start();
    }
    return QLineEdit::event(event);
}

}  // namespace tarnik

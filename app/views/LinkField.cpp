#include "app/views/LinkField.h"

#include <QApplication>
#include <QEvent>

#include "app/views/Grid.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

constexpr int inputTimeoutMs = 10'000;
constexpr int desktopRate = -1;
constexpr int maxLinkLength = 65'536;  // no accepted link is longer
constexpr int textPadding = 4;         // beside the typed text, in addition to the frame
constexpr int pasteHeight = 24;        // in points
constexpr int pasteMargin = 4;

bool isInput(QEvent::Type type) {
    return type == QEvent::FocusIn || type == QEvent::KeyPress || type == QEvent::InputMethod ||
           type == QEvent::MouseButtonPress;
}

}  // namespace

LinkField::LinkField(OnButton onButton, QWidget* parent)
    : QLineEdit(parent), onIntent_(std::move(onButton)), paste_(new IntentButton(onIntent_, this)) {
    setTextMargins(textPadding, 0, textPadding, 0);
    setMaxLength(maxLinkLength);
    setLayoutDirection(Qt::LeftToRight);  // a link reads from left to right in every language
    paste_->setFlat(true);
    paste_->setCursor(Qt::ArrowCursor);
    connect(this, &QLineEdit::textChanged, this, [this] { updatePaste(); });
    inputTimeout_.setSingleShot(true);
    inputTimeout_.setInterval(inputTimeoutMs);
    connect(&inputTimeout_, &QTimer::timeout, this, [] { QApplication::setCursorFlashTime(0); });
    hide();
}

void LinkField::setField(const WindowContent::LinkField& field) {
    if (const auto text = qtText(field.placeholder); text != placeholderText()) setPlaceholderText(text);
    updateAccessibleName(*this, field.accessibleName);
    setEnabled(field.enabled);
    if (field.paste) paste_->setButton(*field.paste);
    canPaste_ = field.paste.has_value();
    updatePaste();
    if (field.refused != refused_) {
        refused_ = field.refused;
        if (refused_) selectAll();
        update();
    }
}

void LinkField::updatePaste() {
    const bool shows = canPaste_ && text().isEmpty();
    if (shows == !paste_->isHidden()) return;
    paste_->setVisible(shows);
}

void LinkField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    const int side = Grid::scaled(font(), pasteHeight);
    const int width = paste_->sizeHint().width();
    place(*paste_, {this->width() - width - pasteMargin, (height() - side) / 2, width, side});
}

bool LinkField::event(QEvent* event) {
    if (isInput(event->type())) {
        QApplication::setCursorFlashTime(desktopRate);
        inputTimeout_.start();
    }
    return QLineEdit::event(event);
}

}  // namespace tarnik

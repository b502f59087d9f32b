#include "app/views/ButtonRow.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <algorithm>

#include "app/views/QtText.h"

namespace tarnik {
namespace {

using Key = WindowContent::Key;

constexpr int gap = 10;

}  // namespace

IntentButton::IntentButton(OnButton onButton, QWidget* parent) : QPushButton(parent) {
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QPushButton::clicked, this, [this, onButton = std::move(onButton)] {
        if (acceptsInput()) onButton(intent_);
    });
}

void IntentButton::setButton(const WindowContent::Button& button) {
    intent_ = button.intent;
    key_ = button.key;
    if (const auto title = qtText(button.title).replace('&', "&&"); title != text()) setText(title);
    updateAccessibleName(*this, button.accessibleName);
    if (isFor(Key::defaultKey) != isDefault()) setDefault(isFor(Key::defaultKey));
    setEnabled(button.enabled);
}

bool IntentButton::isFor(Key key) const {
    return key_ == key || key_ == Key::defaultAndCancelKey;
}

bool IntentButton::acceptsInput() const {
    const bool isNew = !shown_.isValid() || shown_.elapsed() < QApplication::doubleClickInterval();
    return isEnabled() && (key_ == Key::cancelKey || !isNew);
}

void IntentButton::showEvent(QShowEvent* event) {
    QPushButton::showEvent(event);
    if (!event->spontaneous()) shown_.start();
}

// MainView handles Return, because the effect of Return depends on all buttons.
void IntentButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return event->ignore();
    QPushButton::keyPressEvent(event);
}

ButtonRow::ButtonRow(int width, OnButton onButton, QWidget* parent)
    : QWidget(parent),
      width_(width),
      onButton_(std::move(onButton)),
      layout_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(gap);
    hide();
}

bool ButtonRow::setButtons(const std::vector<WindowContent::Button>& buttons) {
    const auto before = buttons_;
    auto spare = std::exchange(buttons_, {});
    for (const auto& button : buttons) {
        buttons_.push_back(takeOrMake(button.intent, spare));
        buttons_.back()->setButton(button);
    }
    for (auto* unused : spare) {
        unused->hide();
        unused->deleteLater();  // not deleted now, because this code may run in the button's click handler
    }
    const bool hasChanged = buttons_ != before;
    if (hasChanged) arrange();
    setVisible(!buttons_.empty());
    return hasChanged;
}

IntentButton* ButtonRow::buttonFor(Key key) const {
    const auto found =
        std::ranges::find_if(buttons_, [key](const auto* button) { return button->isFor(key); });
    return found == buttons_.end() ? nullptr : *found;
}

IntentButton* ButtonRow::takeOrMake(const UserIntent& intent, std::vector<IntentButton*>& from) {
    const auto found =
        std::ranges::find_if(from, [&](const auto* button) { return button->intent() == intent; });
    if (found == from.end()) return new IntentButton(onButton_, this);
    auto* button = *found;
    from.erase(found);
    return button;
}

void ButtonRow::arrange() {
    while (auto* item = layout_->takeAt(0)) delete item;
    int needed = -gap;
    for (const auto* button : buttons_) needed += button->sizeHint().width() + gap;
    const bool fits = needed <= width_;
    layout_->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);

    const auto isCancelOnly = [](const auto* button) {
        return button->isFor(Key::cancelKey) && !button->isFor(Key::defaultKey);
    };
    for (auto* button : buttons_)
        if (!isCancelOnly(button)) layout_->addWidget(button);
    if (fits) layout_->addStretch(1);
    for (auto* button : buttons_) {
        if (isCancelOnly(button)) layout_->addWidget(button);
        button->raise();  // so that screen readers read the buttons in the order of the content
        button->show();
    }
}

}  // namespace tarnik

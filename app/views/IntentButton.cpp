#include "app/views/IntentButton.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <utility>

#include "app/views/QtText.h"

namespace tarnik {
namespace {

using Key = WindowContent::Key;

// The button for screen readers. It is disabled while the button waits.
class AccessibleButton : public QAccessibleWidget {
public:
    explicit AccessibleButton(IntentButton* button)
        : QAccessibleWidget(button, QAccessible::Button), button_(*button) {}

    QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.disabled = !button_.acceptsInput();
        state.defaultButton = button_.isDefault();
        return state;
    }
    QStringList actionNames() const override {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name != pressAction()) return QAccessibleWidget::doAction(name);
        button_.click();
    }

private:
    IntentButton& button_;
};

QAccessibleInterface* accessibleButtonFor(const QString&, QObject* object) {
    auto* button = dynamic_cast<IntentButton*>(object);
    return button ? new AccessibleButton(button) : nullptr;
}

}  // namespace

IntentButton::IntentButton(OnButton onButton, QWidget* parent) : QPushButton(parent) {
    QAccessible::installFactory(accessibleButtonFor);  // ignores repeated calls
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
    return isEnabled() && !isWaiting();
}

bool IntentButton::isWaiting() const {
    if (key_ == Key::cancelKey) return false;
    return !shown_.isValid() || shown_.elapsed() < QApplication::doubleClickInterval();
}

void IntentButton::showEvent(QShowEvent* event) {
    QPushButton::showEvent(event);
    if (event->spontaneous()) return;
    shown_.start();
    if (!isWaiting()) return;
    reportState();
    // One millisecond later than the interval, because the timer may be early.
    QTimer::singleShot(QApplication::doubleClickInterval() + 1, Qt::PreciseTimer, this,
                       [this] { reportState(); });
}

// Draws the new state and reports it to screen readers.
void IntentButton::reportState() {
    update();
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

// MainView handles Return, because the effect of Return depends on all buttons.
void IntentButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return event->ignore();
    QPushButton::keyPressEvent(event);
}

}  // namespace tarnik

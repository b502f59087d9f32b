#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "app/model/SampleScreens.h"
#include "app/views/MainWindow.h"

namespace tarnik {

inline WindowContent sampleContent(std::string_view name) {
    const auto screens = sampleScreens();
    const auto found = std::ranges::find(screens, name, &SampleScreen::name);
    return WindowContent::of(found->state, {.webOrigin = *Url::parse("https://tarnik.invalid")});
}

// A shown window that records the reported intents.
struct ShownView {
    std::vector<std::pair<UserIntent::Kind, std::string>> asked;
    std::function<void()> onIntent = [] {};
    MainWindow window;

    explicit ShownView(const WindowContent& content)
        : window(content, [this](const UserIntent& intent, const std::string& pasted) {
              asked.emplace_back(intent.kind, pasted);
              onIntent();
          }) {
        window.present();
        QApplication::processEvents();
    }

    void show(std::string_view sample) { show(sampleContent(sample)); }
    void show(const WindowContent& content) {
        window.setContent(content);
        QApplication::processEvents();
    }

    // Sends the key to the focus widget.
    void press(Qt::Key key, const QString& text = {}) {
        QWidget* const focused = window.focusWidget() ? window.focusWidget() : &window;
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier, text);
            QCoreApplication::sendEvent(focused, &event);
        }
    }

    static void click(QWidget& widget) {
        const QPointF middle = QRectF(widget.rect()).center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, middle, widget.mapToGlobal(middle), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(&widget, &event);
        }
    }

    // Returns the visible button with this name, or null.
    QPushButton* button(const QString& accessibleName) const {
        for (auto* button : window.findChildren<QPushButton*>())
            if (button->isVisible() && button->accessibleName() == accessibleName) return button;
        return nullptr;
    }
    QWidget& view() const { return *window.findChild<QScrollArea*>()->parentWidget(); }
    QLineEdit& field() const { return *window.findChild<QLineEdit*>(); }
};

}  // namespace tarnik

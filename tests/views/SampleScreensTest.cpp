#include "app/model/SampleScreens.h"

#include <QAccessible>
#include <set>

#include <gtest/gtest.h>

#include "tests/views/ShownView.h"

// Checks every screen for users of screen readers and keyboards.
namespace tarnik {
namespace {

using Visit = std::function<void(QAccessibleInterface&)>;

void walk(QAccessibleInterface* node, const Visit& visit) {
    if (!node || node->state().invisible) return;
    visit(*node);
    for (int i = 0; i < node->childCount(); ++i) walk(node->child(i), visit);
}

bool needsName(const QAccessibleInterface& node) {
    const auto roles = {QAccessible::Button,     QAccessible::EditableText, QAccessible::ProgressBar,
                        QAccessible::StaticText, QAccessible::Graphic,      QAccessible::Window};
    return std::ranges::find(roles, node.role()) != roles.end() || node.state().focusable;
}

TEST(SampleScreens, nameEveryControlAndReachItByTab) {
    for (const auto& screen : sampleScreens()) {
        ShownView view(sampleContent(screen.name));
        std::set<QObject*> reached;
        int upward = 0;
        for (int last = 0; view.press(Qt::Key_Tab), reached.insert(view.window.focusWidget()).second;) {
            const int place = view.window.focusWidget()->mapTo(&view.window, QPoint()).y();
            upward += place < last ? 1 : 0;
            last = place;
        }
        EXPECT_LE(upward, 1) << screen.name << ": Tab goes down, and once from the last control to the first";
        int controls = 0;
        int last = 0;
        walk(QAccessible::queryAccessibleInterface(&view.window), [&](QAccessibleInterface& node) {
            const auto name = node.text(QAccessible::Name).toStdString();
            EXPECT_FALSE(needsName(node) && name.empty())
                << screen.name << ": a nameless " << node.object()->metaObject()->className();
            EXPECT_GE(node.rect().bottom(), last) << screen.name << ": the reading order goes up to " << name;
            last = std::max(last, node.rect().top());
            if (!node.state().focusable || node.state().disabled || node.role() == QAccessible::Window)
                return;
            ++controls;
            EXPECT_TRUE(reached.contains(node.object())) << screen.name << ": Tab does not reach " << name;
        });
        EXPECT_TRUE(controls > 0 || sampleContent(screen.name).buttons.empty()) << screen.name;
    }
}

TEST(SampleScreens, fitIntoTheWindow) {
    for (const auto& screen : sampleScreens()) {
        const ShownView view(sampleContent(screen.name));
        for (const auto* widget : view.window.findChildren<QWidget*>()) {
            const bool hasText = widget->inherits("QLabel") || widget->inherits("QPushButton");
            if (!hasText || !widget->isVisible()) continue;
            EXPECT_TRUE(
                view.window.rect().contains(QRect(widget->mapTo(&view.window, QPoint()), widget->size())))
                << screen.name << ": " << widget->accessibleName().toStdString();
            EXPECT_GE(widget->height(), widget->heightForWidth(widget->width())) << screen.name;
        }
    }
}

}  // namespace
}  // namespace tarnik

#include "app/views/StatusItem.h"

#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "app/views/MenuKey.h"
#include "app/views/QtText.h"

namespace tarnik {
namespace {

using Action = MenuContent::Action;

std::unique_ptr<QMenu> makeMenu(const MenuContent& content, const StatusItem::OnAction& onAction) {
    auto menu = std::make_unique<QMenu>();
    for (const auto& entry : content.entries) {
        if (entry.isSeparator()) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(qtText(translated(entry.title)));
        action->setMenuRole(QAction::NoRole);  // keeps macOS from moving or renaming the entry
        action->setShortcut(menuKey(entry));
        QObject::connect(action, &QAction::triggered, menu.get(),
                         [onAction, chosen = *entry.action] { onAction(chosen); });
    }
    return menu;
}

// Returns true if the system opens the menu on a click.
bool clickOpensMenu() {
    return QGuiApplication::platformName() == "cocoa";
}

}  // namespace

StatusItem::StatusItem(const QIcon& icon, const MenuContent& menu, const OnAction& onAction)
    : menu_(makeMenu(menu, onAction)), item_(std::make_unique<QSystemTrayIcon>()) {
    item_->setIcon(icon);
    item_->setToolTip(qtText(WindowTexts::product));
    item_->setContextMenu(menu_.get());
    if (!clickOpensMenu())
        QObject::connect(item_.get(), &QSystemTrayIcon::activated, item_.get(),
                         [onAction](QSystemTrayIcon::ActivationReason reason) {
                             if (reason == QSystemTrayIcon::Trigger) onAction(Action::openWindow);
                         });
    item_->show();
}

StatusItem::~StatusItem() = default;

void StatusItem::setIcon(const QIcon& icon) {
    item_->setIcon(icon);
}

}  // namespace tarnik

#include "app/views/StatusItem.h"

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <utility>

#include "app/texts/MenuTexts.h"
#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "app/views/MenuKey.h"
#include "app/views/QtText.h"
#include "app/views/TrayIcon.h"

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
        action->setShortcut(menuKey(entry));
        QObject::connect(action, &QAction::triggered, menu.get(),
                         [onAction, chosen = *entry.action] { onAction(chosen); });
    }
    return menu;
}

NativeStatusItem::Content nativeContent(const MenuContent& menu, const StatusItem::OnAction& onAction) {
    NativeStatusItem::Content content{.name = std::string(WindowTexts::product),
                                      .title = std::string(MenuTexts::productWithoutImage),
                                      .menu = {}};
    for (const auto& entry : menu.entries) {
        auto& added = content.menu.emplace_back();
        if (entry.isSeparator()) continue;
        added = {.title = translated(entry.title),
                 .key = std::string(entry.key),
                 .perform = [onAction, chosen = *entry.action] { onAction(chosen); }};
    }
    return content;
}

}  // namespace

StatusItem::StatusItem(StatusItemDeps deps, TrayStatus status, const MenuContent& menu,
                       const OnAction& onAction)
    : deps_(std::move(deps)) {
    if (deps_.make)
        native_ = deps_.make(nativeContent(menu, onAction));
    else
        showInTray(menu, onAction);
    setStatus(status);
    if (item_) item_->show();
}

StatusItem::~StatusItem() = default;

void StatusItem::showInTray(const MenuContent& menu, const OnAction& onAction) {
    menu_ = makeMenu(menu, onAction);
    item_ = std::make_unique<QSystemTrayIcon>();
    item_->setToolTip(qtText(WindowTexts::product));
    item_->setContextMenu(menu_.get());
    QObject::connect(item_.get(), &QSystemTrayIcon::activated, item_.get(),
                     [onAction](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) onAction(Action::openWindow);
                     });
}

void StatusItem::setStatus(TrayStatus status) {
    if (native_) return native_->setPicture(statusPicture(status, deps_.image));
    item_->setIcon(trayIcon(status, deps_.image));
}

}  // namespace tarnik

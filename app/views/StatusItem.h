#pragma once

#include <functional>
#include <memory>

#include "app/model/MenuContent.h"

class QIcon;
class QMenu;
class QSystemTrayIcon;

namespace tarnik {

// The status item and its menu. Owned by DesktopFace. Main thread only.
class StatusItem {
public:
    using OnAction = std::function<void(MenuContent::Action)>;

    // `onAction` receives the chosen menu action. A click on the item opens the window, except on a system
    // where a click opens the menu.
    StatusItem(const QIcon& icon, const MenuContent& menu, const OnAction& onAction);
    ~StatusItem();
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;

    void setIcon(const QIcon& icon);

private:
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> item_;
};

}  // namespace tarnik

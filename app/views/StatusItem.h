#pragma once

#include <functional>
#include <memory>

#include "app/model/MenuContent.h"

class QIcon;
class QMenu;
class QSystemTrayIcon;

namespace tarnik {

// The status item and its menu. Main thread, owned by the desktop program.
class StatusItem {
public:
    using OnAction = std::function<void(MenuContent::Action)>;

    // `onAction` hears what was chosen in the menu; a click on the item itself opens the window where the
    // system doesn't open the menu then. A null icon: the item shows its short title.
    StatusItem(const QIcon& icon, const MenuContent& menu, const OnAction& onAction);
    ~StatusItem();
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;

private:
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> item_;
};

}  // namespace tarnik

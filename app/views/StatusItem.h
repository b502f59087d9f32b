#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/model/MenuContent.h"
#include "app/model/TrayStatus.h"
#include "app/platform/NativeStatusItem.h"

class QMenu;
class QSystemTrayIcon;

namespace tarnik {

// The system's parts of the status item. DesktopPlatform describes them.
struct StatusItemDeps {
    std::optional<std::string> image = {};
    bool isInMenuBar = false;
    MakeNativeStatusItem make = {};
};

// The status item and its menu. Owned by DesktopFace. Main thread only.
class StatusItem {
public:
    using OnAction = std::function<void(MenuContent::Action)>;

    // `onAction` receives the chosen menu action. A click on the toolkit's item opens the window. A click on
    // the system's item opens the menu.
    StatusItem(StatusItemDeps deps, TrayStatus status, const MenuContent& menu, const OnAction& onAction);
    ~StatusItem();
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;

    void setStatus(TrayStatus status);

private:
    void showInTray(const MenuContent& menu, const OnAction& onAction);

    const StatusItemDeps deps_;
    std::optional<NativeStatusItem> native_;  // if absent, the toolkit's item is used
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> item_;
};

}  // namespace tarnik

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "app/model/AttentionWatch.h"
#include "app/model/ChangeFeed.h"
#include "app/model/MenuContent.h"
#include "app/platform/DesktopPlatform.h"
#include "app/views/MainWindow.h"
#include "app/views/StatusItem.h"
#include "app/views/SupportActions.h"

namespace tarnik {

// The graphical face: one window and a status item. Without a tray, the start shows the window, and closing
// the window quits.
//
// Owned by the desktop program, one per run. Main thread only.
class DesktopFace {
public:
    struct Deps {
        MainThread mainThread;
        std::function<void()> activate;  // activates the application; may be absent
        StatusItemDeps statusItem = {};
        std::function<void(int status)> end;  // ends the event loop
        bool atLogin = false;                 // the session started the program, so the tray may start later
        UserDefaults defaults = {};
        UserNotices notices = {};
        HelperAbsence::Limits absence = {};
        SupportActions::Deps support = {};
    };

    DesktopFace(Deps deps, std::shared_ptr<AppModel> model);
    ~DesktopFace();
    DesktopFace(const DesktopFace&) = delete;
    DesktopFace& operator=(const DesktopFace&) = delete;

    // Returns the operations that show this face. They must not outlive this object.
    Presentation presentation();

    // Sets the receiver of the user's choices. Call it before the window or the status item is shown.
    // `delegate` must outlive both.
    void attach(AppDelegate& delegate);

    // Sets the state of the tray. Call it at the start and after each change. The status item is not shown
    // before the first call.
    void setTrayHost(TrayHost host);

    bool windowInUse() const;

private:
    // Both fire once.
    struct Timers {
        std::optional<RepeatingTimer> withoutTray;  // opens the window unless a tray appears earlier
        std::optional<RepeatingTimer> midnight;     // runs while the window is open
    };

    void updateStatusItem();
    void openWindowWithoutTray(Seconds after);
    void updateIcon() const;
    bool windowIsOpen() const;
    void windowSeen();
    void updateContentAtMidnight();
    MainWindow& window();
    void showWindow();
    void refuse(const std::string& why, std::function<void()> seen) const;
    void addMenuKeys();
    void perform(MenuContent::Action action);
    void windowClosed();
    WindowSetting::Closing closing() const;
    WindowContent content() const;
    void updateContent();

    const Deps deps_;
    const std::shared_ptr<AppModel> model_;
    AppDelegate* delegate_ = nullptr;
    std::optional<MenuContent> menu_;  // set by makeStatusItem
    std::optional<TrayHost> host_;     // set by setTrayHost
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<MainWindow> window_;
    Timers timers_;
    AttentionWatch attention_;
    const ChangeFeed feed_;
};

}  // namespace tarnik

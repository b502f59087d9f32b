#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/AppDelegate.h"
#include "app/model/ChangeFeed.h"
#include "app/model/MenuContent.h"
#include "app/platform/DesktopPlatform.h"
#include "app/views/MainWindow.h"
#include "app/views/StatusItem.h"

namespace tarnik {

// The face with a window and a status item. Where nothing shows status items the window is all there is: then
// it is there from the start, and closing it quits.
//
// Owned by the desktop program, one per run. Main thread only.
class DesktopFace {
public:
    struct Deps {
        MainThread mainThread;
        std::function<void()> activate;          // puts the application before all others; may be absent
        std::optional<std::string> statusImage;  // the file of the status item's image; none: the mark
        std::function<void(std::string_view name)> nameStatusItem;  // may be absent
        std::function<void(int status)> end;                        // ends the program's loop
        bool atLogin = false;  // started with the person's session, whose tray may come later
    };

    DesktopFace(Deps deps, std::shared_ptr<AppModel> model);
    ~DesktopFace();
    DesktopFace(const DesktopFace&) = delete;
    DesktopFace& operator=(const DesktopFace&) = delete;

    // What the shell shows; its operations hold `this`.
    Presentation presentation();

    // Whom to tell what the person chose; before anything is shown. It outlives that.
    void attach(AppDelegate& delegate) { delegate_ = &delegate; }

    // Whether anybody shows status items, now and from now on. Until it is told nothing is decided.
    void setTrayHost(TrayHost host);

    bool windowInUse() const;

private:
    void settleTray();
    void waitForTray(Seconds atMost);
    bool closingQuits() const { return host_ != TrayHost::present; }
    MainWindow& window();
    void showWindow();
    void refuse(const std::string& why, std::function<void()> seen) const;
    void addMenuKeys();
    void choose(MenuContent::Action action);
    void closeRequested();
    WindowContent content() const;

    const Deps deps_;
    const std::shared_ptr<AppModel> model_;
    AppDelegate* delegate_ = nullptr;
    std::optional<MenuContent> menu_;  // once the shell has come to it
    std::optional<TrayHost> host_;     // once it is known
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<MainWindow> window_;
    std::optional<RepeatingTimer> trayWait_;  // until we do without one
    const ChangeFeed feed_;
};

}  // namespace tarnik

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/platform/Activity.h"
#include "app/platform/AppearanceSettings.h"
#include "app/platform/BundleOperations.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/MainThread.h"
#include "app/platform/NativeStatusItem.h"
#include "app/platform/SingleInstance.h"
#include "app/platform/SwitchOperations.h"
#include "app/platform/SystemEvents.h"
#include "app/platform/SystemFolders.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UpdateFramework.h"
#include "app/platform/UserDefaults.h"
#include "app/platform/UserNotices.h"
#include "core/foundation/ProxyRoute.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// The properties of this run that a desktop needs.
struct DesktopRun {
    SystemFolders folders;
    Environment environment;
    std::string userFolder;
    std::string executable;             // the path of the program that users start
    std::optional<std::string> bundle;  // the bundle of this program; std::nullopt outside a bundle
    MainThread mainThread;
};

// States whether a tray (a host of status items) is running.
enum class TrayHost { present, absent };

// The operations that one desktop system provides to the application. The build compiles one of the folders
// in app/platform/. That folder defines the static functions. Each operation owns the objects that it uses.
struct DesktopPlatform {
    std::string installPath;  // the path of an installed bundle
    UserDefaults defaults;
    SwitchOperations switches;

    // Registers a handler. The handler runs on the main thread when a switch may have changed. Absent if the
    // system does not report changes.
    std::function<void(std::function<void()>)> onSwitchesChanged;

    std::function<SystemLog(const std::string& category)> log;
    LoginItemService loginItem;
    UpdateFramework updates;
    BundleOperations bundles;
    SystemEvents events;
    SingleInstance singleInstance;

    // True if a start at login passes --at-login. If false, a start at login can't be distinguished from a
    // start by the user.
    bool marksLoginStarts = false;

    UserNotices notices;

    // Looks proxies up in the settings of the desktop. Called on the threads of transfers. Absent if
    // systemProxies() reads the settings.
    ProxyLookup proxies;

    // The status item's image file for a connected machine. The system chooses the colour of the image. If
    // absent, all pictures are drawn.
    std::optional<std::string> statusImage;

    // True if status items are in a menu bar. If false, they are in a panel.
    bool hasMenuBar = false;

    // Absent if the toolkit shows the status item.
    MakeNativeStatusItem makeStatusItem;

    // Activates the application, so that the next window gets the focus. Absent if the toolkit activates the
    // application itself.
    std::function<void()> activate;

    // Reports whether the program is busy. Absent if the system slows no programs down.
    std::function<void(Activity)> setActivity;

    // Registers a handler for the appearance settings. The handler runs on the main thread when the settings
    // are first known and after each change. Absent if the toolkit follows the settings itself.
    std::function<void(std::function<void(const AppearanceSettings&)>)> onAppearanceChanged;

    // Registers a handler for the tray. The handler runs on the main thread, first with the initial state and
    // then after each change. Absent if the system always has a tray. Do not query the toolkit for a tray
    // before the handler has run, because Qt caches the first result.
    std::function<void(std::function<void(TrayHost)>)> onTrayHost;

    // Call it before the toolkit's application object exists, while no other thread reads the environment.
    static void prepare();

    // Returns a message for the user if no window can be shown in this environment, otherwise std::nullopt.
    static std::optional<std::string> whyNoWindow(const Environment& environment);

    // Call it when the toolkit's application object exists and before the event loop runs.
    static DesktopPlatform make(const DesktopRun& run);
};

}  // namespace tarnik

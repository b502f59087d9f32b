#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/platform/AppearanceSettings.h"
#include "app/platform/BundleOperations.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/MainThread.h"
#include "app/platform/SingleInstance.h"
#include "app/platform/SwitchOperations.h"
#include "app/platform/SystemEvents.h"
#include "app/platform/SystemFolders.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UpdateFramework.h"
#include "app/platform/UserDefaults.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// The properties of this run that a desktop needs.
struct DesktopRun {
    SystemFolders folders;
    Environment environment;
    std::string userFolder;
    std::string executable;             // the path of this program
    std::optional<std::string> bundle;  // the bundle that contains this program
    MainThread mainThread;
};

// Whether a tray (a host of status items) is running.
enum class TrayHost { present, absent };

// Everything that one desktop system provides to the shell. The build compiles one of the folders in
// app/platform/, which defines the static functions. Each operation owns what it uses.
struct DesktopPlatform {
    std::string installPath;  // the bundle's path once it is installed
    UserDefaults defaults;
    SwitchOperations switches;

    // Registers a handler that runs on the main thread when a switch may have changed. Absent if the system
    // does not report changes.
    std::function<void(std::function<void()>)> onSwitchesChanged;

    std::function<SystemLog(const std::string& category)> log;
    LoginItemService loginItem;
    UpdateFramework updates;
    BundleOperations bundles;
    SystemEvents events;
    SingleInstance singleInstance;

    // Whether a start at login passes --at-login. Otherwise it can't be distinguished from a start by the
    // user.
    bool marksLoginStarts = false;

    // The status item's image file, a mask that the system colours. Absent if the mark is drawn instead.
    std::optional<std::string> statusImage;

    // Sets the accessible name of the shown status item. Absent if the toolkit sets it.
    std::function<void(std::string_view name)> nameStatusItem;

    // Activates the application, so that a window shown next gets the focus. Absent if the toolkit activates
    // it itself.
    std::function<void()> activate;

    // Registers a handler for the appearance settings. It runs on the main thread, once the settings are
    // known and after each change. Absent if the toolkit follows the settings itself.
    std::function<void(std::function<void(const AppearanceSettings&)>)> onAppearanceChanged;

    // Registers a handler for the tray. It runs on the main thread, first with the initial state and then
    // after each change. Absent if there is always a tray. Do not query the toolkit for a tray before the
    // handler has run, because Qt caches the first result.
    std::function<void(std::function<void(TrayHost)>)> onTrayHost;

    // Call it before the toolkit's application object exists, while no other thread reads the environment.
    static void prepare();

    // Returns a message for the user if no window can be shown here, otherwise std::nullopt.
    static std::optional<std::string> whyNoWindow(const Environment& environment);

    // Call it after the toolkit's application object exists and before the event loop runs.
    static DesktopPlatform make(const DesktopRun& run);
};

}  // namespace tarnik

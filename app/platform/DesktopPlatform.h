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

// What a desktop has to know of the run.
struct DesktopRun {
    SystemFolders folders;
    Environment environment;
    std::string userFolder;
    std::string executable;             // of this program
    std::optional<std::string> bundle;  // that the program runs from
    MainThread mainThread;
};

// Whether there is anything that would show a status item.
enum class TrayHost { present, absent };

// What the desktop of one system gives to the shell. Each folder of app/platform/ makes its own, of which the
// build takes one. Whatever an operation needs lives as long as the operation does.
struct DesktopPlatform {
    std::string installPath;  // the bundle's, where the application is installed
    UserDefaults defaults;
    SwitchOperations switches;

    // Registers what is run on the main thread when a switch may have changed; absent where nobody tells.
    std::function<void(std::function<void()>)> onSwitchesChanged;

    std::function<SystemLog(const std::string& category)> log;
    LoginItemService loginItem;
    UpdateFramework updates;
    BundleOperations bundles;
    SystemEvents events;
    SingleInstance singleInstance;

    // Whether a start with the person's session carries --at-login. Where it carries nothing, no start can be
    // told to come from the person.
    bool marksLoginStarts = false;

    // The file with the status item's image, a shape that the system colours; absent where the mark is drawn.
    std::optional<std::string> statusImage;

    // Gives the status item, once it is shown, a name to be read out; absent where the toolkit does.
    std::function<void(std::string_view name)> nameStatusItem;

    // Puts the application before all others, so that a window shown next has the keyboard; absent where the
    // toolkit does all there is to do.
    std::function<void()> activate;

    // Registers what is told, on the main thread, the choice once it can be told and then each change of it;
    // absent where the toolkit follows by itself.
    std::function<void(std::function<void(const AppearanceSettings&)>)> onAppearanceChanged;

    // Registers what is told, on the main thread, whether there is a tray: once, soon, and then each change.
    // Nobody may ask the toolkit about trays before it was told of one: it remembers its first answer for the
    // rest of the run. Absent where there always is one.
    std::function<void(std::function<void(TrayHost)>)> onTrayHost;

    // Before the application object of the toolkit exists, and while only one thread reads the environment.
    static void prepare();

    // Why there can't be a window here, in words for the person; none where there can.
    static std::optional<std::string> whyNoWindow(const Environment& environment);

    // When the application object of the toolkit exists, and its loop doesn't run yet.
    static DesktopPlatform make(const DesktopRun& run);
};

}  // namespace tarnik

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/platform/BundleOperations.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/MainThread.h"
#include "app/platform/OneCopy.h"
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
    OneCopy oneCopy;

    // Puts the application before all others, so that a window shown next has the keyboard; absent where the
    // toolkit does all there is to do.
    std::function<void()> activate;

    // When the application object of the toolkit exists, and its loop doesn't run yet.
    static DesktopPlatform make(const DesktopRun& run);
};

}  // namespace tarnik

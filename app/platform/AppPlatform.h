#pragma once

#include <functional>
#include <string>

#include "app/platform/BackgroundTasks.h"
#include "app/platform/LoginItemService.h"
#include "app/platform/MainThread.h"
#include "app/platform/SwitchOperations.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UserDefaults.h"

namespace tarnik {

// The operations of the platform that AppModel uses.
struct AppPlatform {
    MainThread mainThread;
    UserDefaults defaults;
    SwitchOperations switches;
    LoginItemService loginItem = {};
    SystemLog log;
    // Returns true if the application is active and one of its windows has the focus. Main thread only.
    std::function<bool()> windowInUse;

    // Runs `task` on a detached thread. Returns false if the system can't create a thread.
    std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;
};

}  // namespace tarnik

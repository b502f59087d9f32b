#pragma once

#include <functional>
#include <string>

#include "app/platform/BackgroundTasks.h"
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
    SystemLog log;
    std::function<bool()> windowInUse;  // the application is active and has a key window; main thread

    // Runs `task` on a detached thread. Returns false if the system can't create a thread.
    std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;
};

}  // namespace tarnik

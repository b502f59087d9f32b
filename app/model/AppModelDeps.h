#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/platform/BackgroundTasks.h"
#include "app/platform/MainThread.h"
#include "app/platform/SwitchOperations.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UserDefaults.h"
#include "core/driver/DriverHostDeps.h"
#include "core/node/LaunchdTakeover.h"
#include "core/node/NodeInstallerDeps.h"
#include "core/node/NodeSupervisorDeps.h"
#include "core/updates/ActivitySources.h"

namespace tarnik {

// What an application's platform has to give to AppModel.
struct AppPlatform {
    MainThread mainThread;
    UserDefaults defaults;
    SwitchOperations switches;
    SystemLog log;
    std::function<bool()> windowInUse;  // the application is active and has a key window; main thread
};

// Everything AppModel asks of the outside.
struct AppModelDeps {
    AppPlatform platform;
    NodeSupervisorDeps supervisor;
    DriverHostDeps driver;
    NodeInstallerDeps installer;
    LaunchdTakeover::Deps launchd;

    // The service's answer about a link, at this address; none when there is no good one. Blocks.
    std::function<std::optional<std::string>(const std::string& url)> fetchAnswer;

    // Where samples are taken from, given how to learn of our two children.
    std::function<ActivitySources(ActivitySources::RunningPID nodePID, ActivitySources::RunningPID driverPID)>
        activity;

    // Starts work of which nobody waits for the end, on a thread of its own; whether it could.
    std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;

    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    static AppModelDeps production(AppPlatform platform, const BackgroundTasks& work);
};

}  // namespace tarnik

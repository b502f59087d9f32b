#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/updates/ActivitySample.h"

namespace tarnik {

// What only the main thread can tell of the application itself.
struct OwnActivity {
    bool settingUp = false;
    bool windowInUse = false;
};

// Everything that a sample is taken from.
struct ActivitySources {
    using RunningPID = std::function<std::optional<pid_t>()>;  // none while it doesn't run

    RunningPID nodePID;
    RunningPID driverPID;
    // A process table with at least all that descends from the pid; none when it can't be had.
    std::function<std::optional<std::vector<ProcessEntry>>(pid_t)> processesUnder;
    std::function<std::optional<double>(pid_t)> cpuSeconds;
    std::function<ActivitySample::Moment()> now;
    std::string holderPath{KeepAwakeHolder::path};

    static ActivitySources production(RunningPID nodePID, RunningPID driverPID);

    // Blocks while the system's processes are read: for a background thread. `own` was told by the main
    // thread.
    ActivitySample sample(OwnActivity own) const;
};

}  // namespace tarnik

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/updates/ActivitySample.h"

namespace tarnik {

// Application state that is read on the main thread only.
struct OwnActivity {
    bool settingUp = false;
    bool windowInUse = false;
};

// The sources of a sample.
struct ActivitySources {
    using RunningPID = std::function<std::optional<pid_t>()>;  // std::nullopt if the process isn't running

    RunningPID nodePID;
    RunningPID driverPID;
    // Returns a process table with at least all descendants of the pid, or std::nullopt on failure.
    std::function<std::optional<std::vector<ProcessEntry>>(pid_t)> processesUnder;
    std::function<std::optional<double>(pid_t)> cpuSeconds;
    std::function<ActivitySample::Moment()> now;
    std::string holderPath{KeepAwakeHolder::path};

    static ActivitySources production(RunningPID nodePID, RunningPID driverPID);

    // Blocks while the system's processes are listed. Call it on a background thread.
    ActivitySample sample(OwnActivity own) const;
};

}  // namespace tarnik

#pragma once

#include <optional>
#include <vector>

#include "core/foundation/Time.h"
#include "core/updates/KeepAwakeHolder.h"

namespace tarnik {

// How busy this machine's agent work is at one moment. What could not be told is absent, never "no".
struct ActivitySample {
    // One moment on two clocks. Stretches of quiet are counted on the steady one, so that nobody who sets the
    // wall clock prolongs or ends them. The age of a holder is told by the clock that stamped its start.
    struct Moment {
        TimePoint steady;
        ProcessTime process;

        static Moment now();
        bool operator==(const Moment&) const = default;
    };

    Moment at;
    std::optional<bool> nodeHoldsAwake;
    std::optional<double> driverCPUSeconds;  // user and system, since the driver's start
    std::optional<pid_t> driverPID;
    bool settingUp = false;  // the application installs or pairs
    std::optional<pid_t> nodePID;
    std::optional<std::vector<KeepAwakeHolder::Seen>> holders;  // under the node
    bool windowInUse = false;                                   // the person works in our window

    bool operator==(const ActivitySample&) const = default;
};

}  // namespace tarnik

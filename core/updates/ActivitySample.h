#pragma once

#include <optional>
#include <vector>

#include "core/foundation/Time.h"
#include "core/updates/KeepAwakeHolder.h"

namespace tarnik {

// The activity of the helper node, the driver and this application at one moment. A value that could not be
// read is std::nullopt, never false.
struct ActivitySample {
    // One moment on two clocks. Quiet stretches are measured on the steady clock, so that a change of the
    // wall clock doesn't affect them. The age of a keep-awake holder is measured on the process clock.
    struct Moment {
        TimePoint steady;
        ProcessTime process;

        static Moment now();
        bool operator==(const Moment&) const = default;
    };

    Moment at;
    std::optional<bool> nodeHoldsAwake;
    std::optional<double> driverCPUSeconds;  // user and system time since the driver's start
    std::optional<pid_t> driverPID;
    bool settingUp = false;  // an installation or a pairing is in progress
    std::optional<pid_t> nodePID;
    std::optional<std::vector<KeepAwakeHolder::Seen>> holders;  // among the node's descendants
    bool windowInUse = false;                                   // the user works in our window

    bool operator==(const ActivitySample&) const = default;
};

}  // namespace tarnik

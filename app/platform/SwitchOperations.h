#pragma once

#include <functional>

#include "core/switches/Switch.h"

namespace tarnik {

// Reads and requests the system's two privacy switches. Main thread only.
struct SwitchOperations {
    // Returns the last known state. Doesn't prompt.
    std::function<bool(Switch)> isOn;

    // Calls `handler` when the state is known or after a time-out of a few seconds. May call `handler` before
    // whenKnown() returns. Absent if the state is known from the start.
    std::function<void(std::function<void()> handler)> whenKnown;

    // Asks the system to prompt the user. The dialog may appear later. Returns true if the switch is on.
    std::function<bool(Switch)> prompt;

    // True if the system grants a permission to one copy of the program only. Then the system's settings may
    // show the switch as on although the running copy lacks the permission.
    bool grantsGoStale = true;

    // Opens the page of the system settings that has the switch.
    std::function<void(Switch)> openSettings;
};

}  // namespace tarnik

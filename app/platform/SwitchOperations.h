#pragma once

#include <functional>

#include "core/switches/Switch.h"

namespace tarnik {

// Reads and requests the system's two privacy switches. Main thread.
struct SwitchOperations {
    // Returns the current state. Never prompts.
    std::function<bool(Switch)> isOn;

    // Calls `handler` once isOn returns the real state, after a few seconds at most. Absent if isOn is
    // accurate from the start.
    std::function<void(std::function<void()> handler)> whenKnown;

    // Asks the system to prompt the user; its dialog may appear later. Returns true if the switch is on
    // already.
    std::function<bool(Switch)> prompt;

    // Whether the system grants a permission to one copy of the program. Its settings may then show the
    // switch as on although the running copy lacks the permission.
    bool grantsGoStale = true;

    // Opens the page of the system settings that has the switch.
    std::function<void(Switch)> openSettings;
};

}  // namespace tarnik

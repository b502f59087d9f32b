#pragma once

#include <functional>

#include "core/switches/Switch.h"

namespace tarnik {

// The two privacy switches of the system. Main thread.
struct SwitchOperations {
    // As the system says right now; never prompts.
    std::function<bool(Switch)> isOn;

    // Runs `handler` once, when isOn can tell: a few seconds later at most. Absent where it can from the
    // start.
    std::function<void(std::function<void()> handler)> whenKnown;

    // Asks the system to offer the switch to the person, with a dialogue of its own, which may come up later.
    // Whether it is on already.
    std::function<bool(Switch)> prompt;

    // Whether the system keeps a grant for one copy of the program, so that its list may show the switch on
    // while the copy that runs doesn't have it.
    bool grantsGoStale = true;

    // Shows the page of the settings where the person turns it on.
    std::function<void(Switch)> openSettings;
};

}  // namespace tarnik

#pragma once

#include "app/console/ConsoleOutput.h"
#include "app/platform/SwitchOperations.h"
#include "core/switches/SwitchSnapshot.h"

namespace tarnik {

// The simulated privacy switches of the console. The user sets them with typed commands. Main thread only.
class SimulatedSwitches {
public:
    SimulatedSwitches(ConsoleOutput& output, SwitchSnapshot atStart) : output_(output), snapshot_(atStart) {}

    void set(Switch which, bool on);

    // Returns operations that must not outlive this object.
    SwitchOperations operations();

private:
    bool isOn(Switch which) const;

    ConsoleOutput& output_;
    SwitchSnapshot snapshot_;
};

}  // namespace tarnik

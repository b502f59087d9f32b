#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// How the desktop driver is started: a recipe, without effects.
struct DriverLaunch {
    // What it is made from.
    struct Inputs {
        std::string executable;
        std::string socketPath;    // where the driver shall listen
        std::string hostBundleID;  // ours
        pid_t hostPID = 0;         // ours
        Environment inherited;     // our own environment
    };

    std::string executable;
    std::vector<std::string> arguments;
    Environment environment;

    // The driver runs without permission gates of its own, since our switches are the gate, and watches its
    // standard input for our end.
    static DriverLaunch make(const Inputs& inputs);

    bool operator==(const DriverLaunch&) const = default;
};

}  // namespace tarnik

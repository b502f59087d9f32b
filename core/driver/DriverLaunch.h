#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

namespace BundledDriver {

// Returns the path of the desktop driver in the application's resources, or std::nullopt without one. The
// driver is a regular file, not a link, that this user may execute.
std::optional<std::string> path(const std::optional<std::string>& resourceFolder);

}  // namespace BundledDriver

// The command line and the environment of the desktop driver.
struct DriverLaunch {
    struct Inputs {
        std::string executable;
        std::string socketPath;    // the socket that the driver creates
        std::string hostBundleID;  // the application's
        pid_t hostPID = 0;         // the application's
        Environment inherited;     // the application's
    };

    std::string executable;
    std::vector<std::string> arguments;
    Environment environment;

    // The driver runs without permission prompts of its own, since the two privacy switches gate it. It
    // watches its standard input and quits when that ends.
    static DriverLaunch make(const Inputs& inputs);

    bool operator==(const DriverLaunch&) const = default;
};

}  // namespace tarnik

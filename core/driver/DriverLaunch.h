#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

namespace BundledDriver {

// Returns the path of the desktop driver in the application's resources. Returns std::nullopt unless the
// driver is a regular file, not a link, and this user may execute it.
std::optional<std::string> path(const std::optional<std::string>& resourceFolder);

}  // namespace BundledDriver

// The command line and the environment of the desktop driver.
struct DriverLaunch {
    struct Inputs {
        std::string executable;
        std::string socketPath;    // the socket that the driver creates
        std::string hostBundleID;  // the bundle id of the application
        pid_t hostPID = 0;         // the process id of the application
        Environment inherited;     // the environment of the application
    };

    std::string executable;
    std::vector<std::string> arguments;
    Environment environment;

    // Disables the driver's own permission prompts, because the driver runs only while both privacy switches
    // are on. The driver quits when its standard input ends.
    static DriverLaunch make(const Inputs& inputs);

    bool operator==(const DriverLaunch&) const = default;
};

}  // namespace tarnik

#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

namespace BundledDriver {

// Returns the path of the desktop driver in the application's resources, or std::nullopt if there is none.
// The driver must be a regular file, not a link, that this user may execute.
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

    // The driver shows no permission prompts of its own, because it runs only while both privacy switches are
    // on. It quits when its standard input ends.
    static DriverLaunch make(const Inputs& inputs);

    bool operator==(const DriverLaunch&) const = default;
};

}  // namespace tarnik

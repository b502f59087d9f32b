#pragma once

#include <optional>
#include <string>

#include "app/model/BuildSettings.h"
#include "core/process/Environment.h"

namespace tarnik {

// What the application works with on this machine, for this user.
struct Machine {
    std::string userFolder;
    std::string applicationSupport;               // the folder that the driver's sockets are made in
    std::string nodeLog;                          // the file with what the helper prints
    std::optional<std::string> driverExecutable;  // none: the build has no driver
    Environment inherited;                        // the application's environment
    BuildSettings settings;
    std::string platform;  // as releases name it: "darwin-arm64"
};

}  // namespace tarnik

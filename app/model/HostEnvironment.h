#pragma once

#include <optional>
#include <string>

#include "app/bundle/BundleInfo.h"
#include "app/platform/ProxySources.h"
#include "app/policy/PolicyReading.h"
#include "core/process/Environment.h"

namespace tarnik {

// The folders, the environment and the settings that the application runs with.
struct HostEnvironment {
    std::string userFolder;
    std::string applicationSupport;               // contains the folder of the driver's sockets
    std::string nodeLog;                          // the file that receives the helper's output
    std::optional<std::string> driverExecutable;  // std::nullopt if the build has no driver
    Environment inherited;                        // the application's environment
    BuildSettings settings;
    PolicyReading policy = {};  // `settings` and `proxies` have its values already
    std::string platform;       // the name in release files, such as "darwin-arm64"
    ProxySources proxies = {};  // for all transfers
};

}  // namespace tarnik

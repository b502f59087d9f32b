#include "core/driver/DriverLaunch.h"

#include "core/driver/CuaDriverEndpoint.h"
#include "core/foundation/Files.h"
#include "core/process/Environment.h"

namespace tarnik {

std::optional<std::string> BundledDriver::path(const std::optional<std::string>& resourceFolder) {
    if (!resourceFolder) return std::nullopt;
    std::string driver = *resourceFolder + "/cua-driver";
    if (!isRegularFile(driver) || !isExecutableFile(driver)) return std::nullopt;
    return driver;
}

DriverLaunch DriverLaunch::make(const Inputs& inputs) {
    Environment variables = withoutPrefixes(inputs.inherited, CuaDriverEndpoint::inheritedFamilyPrefixes);
    variables.erase("CUA_TELEMETRY_ENABLED");
    variables["CUA_DRIVER_EMBEDDED"] = "1";
    variables["CUA_DRIVER_HOST_BUNDLE_ID"] = inputs.hostBundleID;
    variables["CUA_DRIVER_PERMISSION_MODE"] = "unrestricted";
    variables["CUA_DRIVER_DANGEROUSLY_BYPASS_APPROVALS"] = "1";
    variables["CUA_DRIVER_RS_TELEMETRY_ENABLED"] = "false";
    variables["CUA_DRIVER_RS_UPDATE_CHECK"] = "false";
    variables["CUA_DRIVER_EMBEDDED_HOST_PID"] = std::to_string(inputs.hostPID);

    return {.executable = inputs.executable,
            .arguments = {"serve", "--embedded", "--parent-liveness-stdio", "--no-permissions-gate",
                          "--socket", inputs.socketPath, "--host-bundle-id", inputs.hostBundleID,
                          "--permission-mode", "unrestricted", "--dangerously-bypass-approvals"},
            .environment = std::move(variables)};
}

}  // namespace tarnik

#include "core/driver/BundledDriver.h"

#include "core/foundation/Files.h"

namespace tarnik::BundledDriver {

std::optional<std::string> path(const std::optional<std::string>& resourceFolder) {
    if (!resourceFolder) return std::nullopt;
    std::string driver = *resourceFolder + "/cua-driver";
    if (!isRegularFile(driver) || !isExecutableFile(driver)) return std::nullopt;
    return driver;
}

}  // namespace tarnik::BundledDriver

#pragma once

#include <optional>
#include <string>

namespace tarnik::BundledDriver {

// The desktop driver among the application's resources, a regular file (no link) that this user may run;
// none when there is no such file or no resource folder.
std::optional<std::string> path(const std::optional<std::string>& resourceFolder);

}  // namespace tarnik::BundledDriver

#pragma once

#include <optional>
#include <string>

namespace tarnik {

// The version of the bundle at this path, by its Info.plist: the one that people are shown, else that of the
// build. None where there is neither, or no bundle.
std::optional<std::string> bundleVersion(const std::string& bundle);

}  // namespace tarnik

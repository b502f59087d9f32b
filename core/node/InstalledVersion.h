#pragma once

#include <optional>
#include <string>

#include "core/node/NodeHome.h"

namespace tarnik {

// Returns the version in the installed package's description file. Returns std::nullopt if the file can't be
// opened or contains no version. Returns an empty version if the file can't be read or is too large.
std::optional<std::string> installedVersion(const NodeHome& home);

}  // namespace tarnik

#pragma once

#include <expected>
#include <string>

#include "core/node/InstallFailure.h"

namespace tarnik {

// Unpacks a compressed tar archive into an existing folder, without the archive's top folder. `tar` is the
// path of the system's tar. Blocks for up to 132 s. On failure the folder may contain some of the files.
std::expected<void, InstallError> extractArchive(const std::string& tar, const std::string& archive,
                                                 const std::string& folder);

}  // namespace tarnik

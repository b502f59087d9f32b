#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "core/foundation/Files.h"

namespace tarnik {

// Puts a file with these bytes, for its owner alone, in the place of what has this name: a reader finds the
// old one or the new one whole, also after a crash. A link of that name is replaced, not followed. Makes the
// folders that are missing, private ones. Blocks until the disk has it.
std::expected<void, SystemError> writeFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace tarnik

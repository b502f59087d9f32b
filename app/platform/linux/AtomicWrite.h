#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "core/foundation/Files.h"

namespace tarnik {

// Replaces the file at `path` atomically: a reader gets the whole old or the whole new file, even after a
// crash. The new file has mode 0600. Replaces a symbolic link instead of following it. Creates missing parent
// folders with mode 0700. Blocks until the bytes are on disk.
std::expected<void, SystemError> writeFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace tarnik

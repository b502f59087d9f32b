#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "core/foundation/Files.h"

namespace tarnik {

// Replaces the file at `path` atomically. A reader gets the whole old or the whole new file, even after a
// crash. The new file has mode 0600. A symbolic link is replaced, not followed. Creates missing parent
// folders with mode 0700. Blocks until the bytes are on disk.
std::expected<void, SystemError> writeFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace tarnik

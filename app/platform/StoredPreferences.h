#pragma once

#include <optional>
#include <string>

#include "app/platform/SystemFolders.h"

namespace tarnik {

// Returns a text from the user's stored preferences, for commands that run without the desktop's libraries.
// Returns std::nullopt if the value is absent or not a text, or if the file can't be read.
std::optional<std::string> storedText(const SystemFolders& folders, const std::string& key);

}  // namespace tarnik

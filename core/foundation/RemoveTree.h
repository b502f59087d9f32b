#pragma once

#include <string>

namespace tarnik {

// Removes the folder, or whatever else is at `path`, with all that it holds, also folders that don't let
// their owner in. Follows no link. Whether nothing is left. For folders that nobody else may write to.
bool removeTree(const std::string& path);

}  // namespace tarnik

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// Returns the real paths at which a file system, or a part of one, is mounted. Returns std::nullopt on
// failure.
std::optional<std::vector<std::string>> mountPoints();

// Returns the paths that the text of Linux's /proc/self/mountinfo contains.
std::vector<std::string> parseMountInfo(std::string_view text);

}  // namespace tarnik

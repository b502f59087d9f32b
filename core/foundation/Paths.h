#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Normalizes the path as text, without file access. Adds a missing "/" at the front. Removes empty
// components, "." and a trailing "/". Removes each ".." together with the component before it.
std::string standardize(std::string_view path);

// Returns the standardized path with the links in its existing part resolved. The rest need not exist.
std::string resolvingLinks(std::string_view path);

// Returns the result of realpath(3), or std::nullopt on failure, for example if `path` doesn't exist.
std::optional<std::string> realPath(const std::string& path);

// Returns the parent folder of a standardized path. The parent of "/" is "/".
std::string parentFolder(std::string_view path);

}  // namespace tarnik

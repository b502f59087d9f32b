#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// The path made absolute and plain, by its text alone: no empty pieces, no ".", each ".." taking off the
// piece before it (none at the top), no "/" at the end. Nothing is looked up.
std::string standardize(std::string_view path);

// The standardized path with the links of its existing part followed; the rest may not exist yet.
std::string resolvingLinks(std::string_view path);

// The true path of what exists at `path`, without any links; none when nothing does.
std::optional<std::string> realPath(const std::string& path);

// The folder that holds a standardized path; "/" for itself.
std::string parentFolder(std::string_view path);

}  // namespace tarnik

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// The bundle folder that a program at this path belongs to: X of X/Contents/MacOS/NAME. None for a program
// that stands elsewhere.
std::optional<std::string> bundleOf(std::string_view executable);

}  // namespace tarnik

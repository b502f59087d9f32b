#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

inline constexpr std::size_t maxTerminalTailBytes = 16384;

// The end of what a program printed, fit for a box that shows plain text: whole characters, line ends, and no
// other controls or marks that turn the direction of writing. White space at the end is left out.
std::string terminalTail(std::string_view printed);

}  // namespace tarnik

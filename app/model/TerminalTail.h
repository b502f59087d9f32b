#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

inline constexpr std::size_t maxTerminalTailBytes = 16384;

// Returns the end of a program's output for a plain text box. The result contains whole characters and line
// feeds, but no other control characters and no marks that change the text direction. Trailing spaces and
// line feeds are removed.
std::string terminalTail(std::string_view printed);

}  // namespace tarnik

#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// Text from outside, fit for one line of a terminal: no control characters, and short.
std::string shown(std::string_view text, std::size_t maxBytes = 200);

}  // namespace tarnik

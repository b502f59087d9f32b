#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// Divides a line at spaces into lines of at most `width` characters. A longer word, such as a path, gets a
// line of its own and is not divided. A width of 0 means no limit. Characters are code points.
std::vector<std::string> wrappedLines(std::string_view text, std::size_t width);

}  // namespace tarnik

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// Returns the last whole lines of a log file, up to `maxBytes`. If space is left, the last whole lines of the
// older copy at path + ".1" precede them. A last line without a line feed is included. Does not follow a link
// in the last path component and never blocks on a pipe. A file that is missing, unreadable or not regular
// counts as empty.
std::string readLogTail(const std::string& path, std::size_t maxBytes);

// Returns the last `count` lines of the text.
std::string_view lastLines(std::string_view text, std::size_t count);

}  // namespace tarnik

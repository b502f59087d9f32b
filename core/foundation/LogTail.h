#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// Returns the last whole lines of a log file and, before them, of its older copy at path + ".1": at most
// `maxBytes` in all. A last line without a line feed is included. Follows no link and never blocks on a pipe.
// A file that is missing, unreadable or not regular counts as empty.
std::string readLogTail(const std::string& path, std::size_t maxBytes);

// Returns the last `count` lines of the text.
std::string_view lastLines(std::string_view text, std::size_t count);

}  // namespace tarnik

#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace tarnik {

// What stands between blanks and line ends: a table of short texts.
inline std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace tarnik

#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace tarnik {

// Splits the text at white space.
inline std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace tarnik

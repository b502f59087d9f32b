#include "app/commands/TextWrap.h"

#include <algorithm>

namespace tarnik {
namespace {

// Returns the number of code points of valid UTF-8.
std::size_t lengthOf(std::string_view text) {
    constexpr unsigned continuation = 0x80;
    constexpr unsigned topBits = 0xC0;
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char byte) { return (static_cast<unsigned char>(byte) & topBits) != continuation; }));
}

}  // namespace

std::vector<std::string> wrappedLines(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    std::string line;
    while (!text.empty()) {
        // A word with the spaces before it, which a text may use for alignment.
        const auto start = std::min(text.find_first_not_of(' '), text.size());
        const auto end = std::min(text.find(' ', start), text.size());
        const auto word = text.substr(start, end - start);
        if (width > 0 && !line.empty() && !word.empty() && lengthOf(line) + start + lengthOf(word) > width) {
            lines.push_back(line);
            line = word;
        } else {
            line += text.substr(0, end);
        }
        text.remove_prefix(end);
    }
    lines.push_back(line);
    return lines;
}

}  // namespace tarnik

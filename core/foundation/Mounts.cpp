#include "core/foundation/Mounts.h"

#include <algorithm>
#include <ranges>

namespace tarnik {
namespace {

constexpr std::size_t pathField = 4;
constexpr std::size_t escapeSize = 4;

bool isOctal(char character) {
    return character >= '0' && character <= '7';
}

// Replaces escapes such as \040, which the kernel writes for white space and backslashes.
std::string unescaped(std::string_view field) {
    std::string path;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const auto digits = field.substr(i).substr(0, escapeSize).substr(1);
        if (field[i] != '\\' || digits.size() + 1 < escapeSize || !std::ranges::all_of(digits, isOctal)) {
            path += field[i];
            continue;
        }
        int code = 0;
        for (const char digit : digits) code = code * 8 + (digit - '0');
        path += static_cast<char>(code);
        i += digits.size();
    }
    return path;
}

}  // namespace

std::vector<std::string> parseMountInfo(std::string_view text) {
    std::vector<std::string> paths;
    for (const auto line : std::views::split(text, '\n')) {
        auto fields = std::views::split(line, ' ') | std::views::drop(pathField);
        if (fields.begin() != fields.end()) paths.push_back(unescaped(std::string_view(*fields.begin())));
    }
    return paths;
}

}  // namespace tarnik

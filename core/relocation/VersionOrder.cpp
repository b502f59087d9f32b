#include "core/relocation/VersionOrder.h"

#include <algorithm>
#include <cstddef>

namespace tarnik {

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool startsWithDigit(std::string_view text) {
    return !text.empty() && isDigit(text.front());
}

// Removes the digits at the front and returns them without leading zeros.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::ranges::find_if_not(text, isDigit);
    std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

std::weak_ordering compareNumbers(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return a.size() <=> b.size();
    return a <=> b;
}

}  // namespace

std::weak_ordering compareVersions(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        std::weak_ordering order = std::weak_ordering::equivalent;
        if (startsWithDigit(a) && startsWithDigit(b)) {
            const std::string_view first = takeNumber(a);
            order = compareNumbers(first, takeNumber(b));
        } else {
            order = std::weak_ordering(a.substr(0, 1) <=> b.substr(0, 1));
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
        if (order != 0) return order;
    }
    return a.size() <=> b.size();
}

}  // namespace tarnik

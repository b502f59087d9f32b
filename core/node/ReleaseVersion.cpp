#include "core/node/ReleaseVersion.h"

#include <algorithm>
#include <cstddef>

namespace tarnik::ReleaseVersion {

namespace {

// Removes a number of minDigits to maxDigits decimal digits from the front and returns the number. Returns
// std::nullopt if the text begins with fewer digits.
std::optional<int> takeNumber(std::string_view& text, std::size_t minDigits, std::size_t maxDigits) {
    int number = 0;
    std::size_t digits = 0;
    while (digits < std::min(maxDigits, text.size()) && text[digits] >= '0' && text[digits] <= '9') {
        number = number * 10 + (text[digits] - '0');
        ++digits;
    }
    if (digits < minDigits) return std::nullopt;
    text.remove_prefix(digits);
    return number;
}

bool take(std::string_view& text, char character) {
    if (!text.starts_with(character)) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

std::optional<Parts> parts(std::string_view text) {
    const auto year = takeNumber(text, 4, 4);
    if (!year || !take(text, '.')) return std::nullopt;
    const auto month = takeNumber(text, 1, 2);
    if (!month || !take(text, '.')) return std::nullopt;
    const auto patch = takeNumber(text, 1, 3);
    if (!patch) return std::nullopt;
    if (text.empty()) return Parts{*year, *month, *patch, 0};
    if (!take(text, '-')) return std::nullopt;
    const auto build = takeNumber(text, 1, 4);
    if (!build || !text.empty()) return std::nullopt;
    return Parts{*year, *month, *patch, *build};
}

std::optional<int> compare(std::string_view a, std::string_view b) {
    const auto first = parts(a);
    const auto second = parts(b);
    if (!first || !second) return std::nullopt;
    if (*first == *second) return 0;
    return *first < *second ? -1 : 1;
}

}  // namespace tarnik::ReleaseVersion

#pragma once

#include <compare>
#include <string_view>

namespace tarnik {

// Compares two version texts character by character, and runs of digits as numbers of any length. So 1.9 is
// older than 1.10, 1.1 is older than 1.1.0, and 1.01 equals 1.1.
std::weak_ordering compareVersions(std::string_view a, std::string_view b);

}  // namespace tarnik

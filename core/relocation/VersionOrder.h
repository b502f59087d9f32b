#pragma once

#include <compare>
#include <string_view>

namespace tarnik {

// How two version texts follow each other: character by character, but runs of digits as numbers, however
// long they are. So 1.9 is older than 1.10, and 1.1 older than 1.1.0; 1.01 is the same as 1.1.
std::weak_ordering compareVersions(std::string_view a, std::string_view b);

}  // namespace tarnik

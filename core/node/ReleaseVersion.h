#pragma once

#include <array>
#include <optional>
#include <string_view>

// The version of a helper release: year.month.patch with an optional build number, as in "2026.3.1-2".
// Leading zeros are ignored. NodeInstaller decides which version may replace the installed one.
namespace tarnik::ReleaseVersion {

// Year, month, patch and build. An absent build is 0.
using Parts = std::array<int, 4>;

// Returns std::nullopt if the text is not a release version.
std::optional<Parts> parts(std::string_view text);

// Returns -1 if `a` is older than `b`, 0 if both are equal, and 1 if `a` is newer. Returns std::nullopt if
// `a` or `b` is not a release version.
std::optional<int> compare(std::string_view a, std::string_view b);

}  // namespace tarnik::ReleaseVersion

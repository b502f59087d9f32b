#pragma once

#include <array>
#include <optional>
#include <string_view>

// The version of a release of the helper package: year.month.patch, perhaps with a build number behind a
// hyphen, as in "2026.3.1-2". Leading zeros mean nothing.
namespace tarnik::ReleaseVersion {

// Year, month, patch and build, which is 0 when there is none.
using Parts = std::array<int, 4>;

std::optional<Parts> parts(std::string_view text);

// -1 when a is older than b, 1 when it is newer, 0 when they are the same; none when either is no version.
std::optional<int> compare(std::string_view a, std::string_view b);

}  // namespace tarnik::ReleaseVersion

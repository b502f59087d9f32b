#pragma once

#include <string_view>

// The forms of sizes.
namespace tarnik::FormatTexts {

using Text = std::string_view;

inline constexpr Text megabytes = "{number} MB";
inline constexpr Text partOf = "{part} of {whole}";  // "18.1 MB of 40.1 MB"

}  // namespace tarnik::FormatTexts

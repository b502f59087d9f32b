#pragma once

#include <string_view>

// The texts of the status item and of its menu.
namespace tarnik::MenuTexts {

using Text = std::string_view;

inline constexpr Text productWithoutImage = "tk";
inline constexpr Text openWindow = "Open tarnik";
inline constexpr Text checkForUpdates = "Check for Updates…";
inline constexpr Text quit = "Quit tarnik";

}  // namespace tarnik::MenuTexts

#pragma once

#include <string_view>

// The texts about the start at login in the window.
namespace tarnik::LoginTexts {

using Text = std::string_view;

inline constexpr Text startAtLogin = "Start at login";
inline constexpr Text allowInSettings = "Allow it in System Settings";

// A choice that had no effect. The system's message follows on its own line.
inline constexpr Text choiceFailed =
    "tarnik couldn't change whether it starts at login. You can change it in the system's settings.";

}  // namespace tarnik::LoginTexts

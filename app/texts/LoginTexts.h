#pragma once

#include <string_view>

// The texts about the start at login in the window.
namespace tarnik::LoginTexts {

using Text = std::string_view;

inline constexpr Text startAtLogin = "Start at login";
inline constexpr Text allowInSettings = "Start at login: allow it in System Settings";

// A choice that had no effect. Fits on one line, because the system's message follows on the second line.
inline constexpr Text choiceFailed = "Start at login didn't change. Try the system's settings.";

// A forced setting of the organisation.
inline constexpr Text lockedStartAtLogin = "Start at login – set by your organisation";

}  // namespace tarnik::LoginTexts

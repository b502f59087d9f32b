#pragma once

#include <array>
#include <string_view>

namespace tarnik {

// A privacy switch of the system settings that the desktop driver needs.
enum class Switch { accessibility, screenRecording };

// In the order in which the window shows them.
inline constexpr std::array allCases{Switch::accessibility, Switch::screenRecording};

// "accessibility", "screenRecording": for files and logs, the same in every version.
std::string_view rawValue(Switch which);

// What the window says: the switch's name, and what it is good for.
std::string_view title(Switch which);
std::string_view why(Switch which);

// Opens the page of the system settings where it is turned on.
std::string_view settingsURL(Switch which);

}  // namespace tarnik

#pragma once

#include <array>
#include <string_view>

namespace tarnik {

// A privacy switch of the system settings that the desktop driver needs.
enum class Switch { accessibility, screenRecording };

// All switches, in the order in which the window shows them.
inline constexpr std::array allCases{Switch::accessibility, Switch::screenRecording};

// Returns "accessibility" or "screenRecording", for files and logs. The names never change between versions.
std::string_view rawValue(Switch which);

// Return the texts for the window: the name of the switch, and its purpose.
std::string_view title(Switch which);
std::string_view why(Switch which);

// Returns the URL of the page in the system settings.
std::string_view settingsURL(Switch which);

}  // namespace tarnik

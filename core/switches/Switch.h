#pragma once

#include <array>
#include <string_view>

namespace tarnik {

// A privacy switch in the system settings. The desktop driver needs all of these switches.
enum class Switch { accessibility, screenRecording };

// All switches, in the order in which the window shows them.
inline constexpr std::array allCases{Switch::accessibility, Switch::screenRecording};

// Returns "accessibility" or "screenRecording", for files and logs. The names never change between versions.
std::string_view rawValue(Switch which);

// Return the texts for the window: the name of the switch, and its purpose.
std::string_view title(Switch which);
std::string_view why(Switch which);

// Returns the URL of the switch's page in the system settings.
std::string_view settingsURL(Switch which);

}  // namespace tarnik

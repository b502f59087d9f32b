#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// A time of the calendar, for records. It follows changes of the system's clock, so it measures no delays.
using WallTime = std::chrono::system_clock::time_point;

// Return the time in UTC: "2026-03-01T14:05:09Z", "2026-03-01T14:05:09.250Z".
std::string isoSeconds(WallTime time);
std::string isoMilliseconds(WallTime time);

// Parses exactly the form that isoMilliseconds() returns.
std::optional<WallTime> parseIsoMilliseconds(std::string_view text);

}  // namespace tarnik

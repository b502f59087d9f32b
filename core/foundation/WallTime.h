#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// A calendar time for records. It follows changes of the system's clock, so don't measure delays with it.
using WallTime = std::chrono::system_clock::time_point;

// Return the time in UTC, such as "2026-03-01T14:05:09Z" or "2026-03-01T14:05:09.250Z".
std::string isoSeconds(WallTime time);
std::string isoMilliseconds(WallTime time);

// Parses exactly the form that isoMilliseconds() returns, for the years 1970 to 2200.
std::optional<WallTime> parseIsoMilliseconds(std::string_view text);

}  // namespace tarnik

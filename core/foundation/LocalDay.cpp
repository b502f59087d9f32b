#include "core/foundation/LocalDay.h"

#include <ctime>

namespace tarnik {

// The library corrects the day that follows the last one of a month, and knows the days with a change of the
// clock.
WallTime nextDay(WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    local.tm_mday += 1;
    local.tm_hour = local.tm_min = local.tm_sec = 0;
    local.tm_isdst = -1;
    return std::chrono::system_clock::from_time_t(std::mktime(&local));
}

}  // namespace tarnik

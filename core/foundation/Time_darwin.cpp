#include "core/foundation/Time.h"

#include <ctime>

namespace tarnik {

SteadyClock::time_point SteadyClock::now() {
    return time_point(std::chrono::nanoseconds(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW)));
}

ProcessClock::time_point ProcessClock::now() {
    return time_point(std::chrono::system_clock::now().time_since_epoch());
}

}  // namespace tarnik

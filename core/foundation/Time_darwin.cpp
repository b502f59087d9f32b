#include "core/foundation/Time.h"

#include <ctime>

namespace tarnik {

SteadyClock::time_point SteadyClock::now() {
    return time_point(std::chrono::nanoseconds(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW)));
}

}  // namespace tarnik

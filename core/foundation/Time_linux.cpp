#include "core/foundation/Time.h"

#include <ctime>

namespace tarnik {

SteadyClock::time_point SteadyClock::now() {
    struct timespec time = {};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time_point(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace tarnik

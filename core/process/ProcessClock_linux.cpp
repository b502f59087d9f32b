#include "core/process/ProcessClock.h"

#include <ctime>

namespace tarnik {

ProcessTime ProcessClock::now() {
    struct timespec time = {};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return ProcessTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace tarnik

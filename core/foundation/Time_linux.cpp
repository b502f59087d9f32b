#include "core/foundation/Time.h"

#include <ctime>

namespace tarnik {
namespace {

template <class Clock>
Clock::time_point read(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return typename Clock::time_point(std::chrono::seconds(time.tv_sec) +
                                      std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace

SteadyClock::time_point SteadyClock::now() {
    return read<SteadyClock>(CLOCK_MONOTONIC);
}

ProcessClock::time_point ProcessClock::now() {
    return read<ProcessClock>(CLOCK_BOOTTIME);
}

}  // namespace tarnik

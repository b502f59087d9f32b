#pragma once

#include <algorithm>
#include <chrono>

namespace tarnik {

// Durations in seconds, with fractions: delays, graces, time-outs.
using Seconds = std::chrono::duration<double>;

// The clock of every delay, wait, time-out and quiet stretch. It never jumps with the wall clock, and stands
// still while the machine sleeps: sleeping through a grace or a time-out is not using it up, and ten quiet
// minutes are ten minutes that were watched. CLOCK_MONOTONIC on Linux, CLOCK_UPTIME_RAW on Darwin, where
// std::chrono::steady_clock counts sleep. Ages of processes have a clock of their own (ProcessClock).
struct SteadyClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<SteadyClock>;
    static constexpr bool is_steady = true;

    static time_point now();
};

using TimePoint = SteadyClock::time_point;

// Longer waits are cut to this, so that no sum of a moment and a delay overflows.
inline constexpr Seconds longestDelay = std::chrono::hours(24 * 365);

inline TimePoint steadyNow() {
    return SteadyClock::now();
}

// `from` plus `delay`; a negative or meaningless (NaN) delay counts as none.
inline TimePoint after(TimePoint from, Seconds delay) {
    const Seconds bounded = delay > Seconds::zero() ? std::min(delay, longestDelay) : Seconds::zero();
    return from + std::chrono::ceil<TimePoint::duration>(bounded);
}

}  // namespace tarnik

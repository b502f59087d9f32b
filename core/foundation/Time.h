#pragma once

#include <algorithm>
#include <chrono>

namespace tarnik {

// A duration in seconds, with fractions, for delays, grace periods and time-outs.
using Seconds = std::chrono::duration<double>;

// The members that std::chrono requires of a clock with a resolution of nanoseconds.
template <class Clock>
struct NanosecondClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<Clock, duration>;
};

// The clock for all delays, waits, time-outs and idle periods. It ignores changes of the wall clock. It stops
// while the machine sleeps, so that sleep counts neither towards a time-out nor as idle time. It is
// CLOCK_MONOTONIC on Linux, and CLOCK_UPTIME_RAW on Darwin, where std::chrono::steady_clock counts sleep.
struct SteadyClock : NanosecondClock<SteadyClock> {
    static constexpr bool is_steady = true;
    static time_point now();
};
using TimePoint = SteadyClock::time_point;

// The clock of the start times that the system records for processes. Use it for the ages of processes, not
// for delays. It counts sleep. On Linux it starts at boot and can't be set. On Darwin it is the wall clock.
struct ProcessClock : NanosecondClock<ProcessClock> {
    static constexpr bool is_steady = false;
    static time_point now();
};
using ProcessTime = ProcessClock::time_point;

// Upper bound for a delay, so that no sum of a time point and a delay overflows.
inline constexpr Seconds longestDelay = std::chrono::hours(24 * 365);

inline TimePoint steadyNow() {
    return SteadyClock::now();
}

// Returns `from` plus `delay`. The delay is limited to longestDelay. A negative delay and NaN count as zero.
inline TimePoint after(TimePoint from, Seconds delay) {
    const Seconds bounded = delay > Seconds::zero() ? std::min(delay, longestDelay) : Seconds::zero();
    return from + std::chrono::ceil<TimePoint::duration>(bounded);
}

}  // namespace tarnik

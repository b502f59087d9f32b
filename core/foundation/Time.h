#pragma once

#include <algorithm>
#include <chrono>

namespace tarnik {

// Durations in seconds, with fractions: delays, graces, time-outs.
using Seconds = std::chrono::duration<double>;

// A moment on the steady clock, which never jumps with the wall clock.
using TimePoint = std::chrono::steady_clock::time_point;

// Longer waits are cut to this, so that no sum of a moment and a delay overflows.
inline constexpr Seconds longestDelay = std::chrono::hours(24 * 365);

inline TimePoint steadyNow() {
    return std::chrono::steady_clock::now();
}

// `from` plus `delay`; a negative or meaningless (NaN) delay counts as none.
inline TimePoint after(TimePoint from, Seconds delay) {
    const Seconds bounded = delay > Seconds::zero() ? std::min(delay, longestDelay) : Seconds::zero();
    return from + std::chrono::ceil<TimePoint::duration>(bounded);
}

}  // namespace tarnik

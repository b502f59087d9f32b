#pragma once

#include <chrono>

namespace tarnik {

// The clock by which the system notes when a process starts: for ages of processes, not for delays. It goes
// on while the machine sleeps.
//
// On Linux it counts from the boot and can't be set. On Darwin it is the wall clock, which can.
struct ProcessClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<ProcessClock>;
    static constexpr bool is_steady = false;

    static time_point now();
};

using ProcessTime = ProcessClock::time_point;

}  // namespace tarnik

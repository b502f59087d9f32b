#pragma once

#include <chrono>
#include <thread>

#include "core/foundation/Time.h"

namespace tarnik {

// Polls until `condition` holds. Returns false if it does not within `limit`. Use it only for state without
// an event, such as a count in /proc.
template <class Condition>
bool eventually(Condition condition, Seconds limit = Seconds(20)) {
    const TimePoint deadline = after(steadyNow(), limit);
    while (!condition()) {
        if (steadyNow() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace tarnik

#pragma once

#include <chrono>
#include <thread>

#include "core/foundation/Time.h"

namespace tarnik {

// Whether `condition` comes true within `limit`. Only for what announces no change, such as a count in /proc;
// whatever has an event is waited for by that.
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

#pragma once

#include <functional>

#include "core/foundation/Time.h"

namespace tarnik {

// A sleep that another thread can end early.
struct InterruptibleSleep {
    std::function<void(Seconds)> sleep;  // blocks the caller
    std::function<void()> interrupt;     // ends the current sleep; later sleeps return at once

    static InterruptibleSleep production();
};

}  // namespace tarnik

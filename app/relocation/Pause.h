#pragma once

#include <functional>

#include "core/foundation/Time.h"

namespace tarnik {

// Sleeping that can be cut short from another thread.
struct Pause {
    std::function<void(Seconds)> sleep;  // blocks the caller
    std::function<void()> cut;           // ends the sleep that is on, and every later one at once

    static Pause production();
};

}  // namespace tarnik

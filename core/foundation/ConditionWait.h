#pragma once

#include <functional>

#include "core/foundation/Mutex.h"

namespace tarnik {

// Waits on `changed` until `done` returns true, for up to `timeout`. Calls `done` with the lock held, and
// returns the last result of `done`. Tests with a fake clock replace steadyWait().
using ConditionWait = std::function<bool(MutexLock& lock, Condition& changed, Seconds timeout,
                                         const std::function<bool()>& done)>;

inline bool steadyWait(MutexLock& lock, Condition& changed, Seconds timeout,
                       const std::function<bool()>& done) {
    const TimePoint deadline = after(steadyNow(), timeout);
    while (!done()) {
        if (!changed.waitUntil(lock, deadline)) return done();
    }
    return true;
}

}  // namespace tarnik

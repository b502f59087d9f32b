#pragma once

#include <functional>

#include "core/foundation/Mutex.h"

namespace tarnik {

// Waits on `changed` for at most `timeout` until `done` returns true. Returns the result of `done`, which is
// called with the lock held. Tests with a fake clock replace steadyWait().
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

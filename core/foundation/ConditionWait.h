#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

#include "core/foundation/Time.h"

namespace tarnik {

// Waits on `changed` for at most `timeout` until `done` returns true. Returns what `done` returns. A test
// replaces it to make time up.
using ConditionWait = std::function<bool(std::unique_lock<std::mutex>& lock, std::condition_variable& changed,
                                         Seconds timeout, const std::function<bool()>& done)>;

inline bool steadyWait(std::unique_lock<std::mutex>& lock, std::condition_variable& changed, Seconds timeout,
                       const std::function<bool()>& done) {
    return changed.wait_until(lock, after(steadyNow(), timeout), done);
}

}  // namespace tarnik

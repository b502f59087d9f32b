#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "core/foundation/Time.h"

namespace tarnik {

// The waiting tasks of a serial queue, ordered by their due times. Tasks with equal due times keep the order
// in which they were added. A value without a clock or a lock.
class TaskSchedule {
public:
    using Task = std::function<void()>;
    using Timer = unsigned long long;

    Timer push(TimePoint due, Task task);

    // Returns the removed task, so that the caller can destroy the task with no lock held. Returns
    // std::nullopt if the task isn't waiting.
    std::optional<Task> cancel(Timer timer);

    std::optional<TimePoint> nextDue() const;

    // Removes and returns the first task if it is due at `now`.
    std::optional<Task> take(TimePoint now);

private:
    std::map<std::pair<TimePoint, Timer>, Task> waiting_;
    Timer lastTimer_ = 0;
};

}  // namespace tarnik

#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "core/foundation/Time.h"

namespace tarnik {

// The waiting tasks of a serial queue, in the order in which they fall due; those due at the same moment in
// the order in which they came. A value without a clock or lock of its own.
class TaskSchedule {
public:
    using Task = std::function<void()>;
    using Timer = unsigned long long;

    Timer push(TimePoint due, Task task);

    // Gives back the dropped task, so that what it holds can go without the caller's lock. None once it was
    // taken.
    std::optional<Task> cancel(Timer timer);

    std::optional<TimePoint> nextDue() const;

    // The first task, if it is due at `now`.
    std::optional<Task> take(TimePoint now);

private:
    std::map<std::pair<TimePoint, Timer>, Task> waiting_;
    Timer lastTimer_ = 0;
};

}  // namespace tarnik

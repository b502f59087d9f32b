#include "core/foundation/TaskSchedule.h"

#include <algorithm>

namespace tarnik {

TaskSchedule::Timer TaskSchedule::push(TimePoint due, Task task) {
    waiting_.emplace(std::pair(due, ++lastTimer_), std::move(task));
    return lastTimer_;
}

std::optional<TaskSchedule::Task> TaskSchedule::cancel(Timer timer) {
    const auto found =
        std::ranges::find(waiting_, timer, [](const auto& entry) { return entry.first.second; });
    if (found == waiting_.end()) return std::nullopt;
    return std::move(waiting_.extract(found).mapped());
}

std::optional<TimePoint> TaskSchedule::nextDue() const {
    if (waiting_.empty()) return std::nullopt;
    return waiting_.begin()->first.first;
}

std::optional<TaskSchedule::Task> TaskSchedule::take(TimePoint now) {
    if (waiting_.empty() || waiting_.begin()->first.first > now) return std::nullopt;
    return std::move(waiting_.extract(waiting_.begin()).mapped());
}

}  // namespace tarnik

#include "tests/support/ManualMainThread.h"

#include <algorithm>
#include <utility>

namespace tarnik {

MainThread ManualMainThread::record() const {
    return {.post =
                [inner = inner_](MainThread::Task task) {
                    const std::lock_guard lock(inner->mutex);
                    inner->posted.push_back(std::move(task));
                },
            .repeat =
                [inner = inner_](Seconds interval, MainThread::Task task) {
                    const std::lock_guard lock(inner->mutex);
                    const int timer = ++inner->lastTimer;
                    inner->timers[timer] = {interval, after(inner->clock->now(), interval), std::move(task)};
                    return RepeatingTimer([inner, timer] {
                        const std::lock_guard again(inner->mutex);
                        inner->timers.erase(timer);
                    });
                }};
}

ManualMainThread::Ran ManualMainThread::run() {
    for (Ran ran = Ran::none;; ran = Ran::some) {
        std::vector<MainThread::Task> tasks;
        {
            const std::lock_guard lock(inner_->mutex);
            tasks = std::exchange(inner_->posted, {});
        }
        if (tasks.empty()) return ran;
        for (const auto& task : tasks) task();
    }
}

void ManualMainThread::advance(Seconds by) {
    const auto end = after(inner_->clock->now(), by);
    run();
    for (;;) {
        MainThread::Task task;
        {
            const std::lock_guard lock(inner_->mutex);
            const auto next = std::ranges::min_element(inner_->timers, {},
                                                       [](const auto& entry) { return entry.second.due; });
            if (next == inner_->timers.end() || next->second.due > end) break;
            inner_->clock->set(next->second.due);
            next->second.due = after(next->second.due, next->second.interval);
            task = next->second.task;
        }
        task();
        run();
    }
    inner_->clock->set(end);
}

}  // namespace tarnik

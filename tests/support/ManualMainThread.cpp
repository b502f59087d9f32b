#include "tests/support/ManualMainThread.h"

#include <utility>

namespace tarnik {

MainThread ManualMainThread::record() const {
    return {.post = [queue = queue_](MainThread::Task task) { queue->post(std::move(task)); },
            .repeat =
                [queue = std::weak_ptr(queue_)](Seconds interval, MainThread::Task task) {
                    // Only the timer owns it, so the repetition ends with the timer.
                    const auto fire = std::make_shared<MainThread::Task>();
                    const auto arm = [queue, interval, weak = std::weak_ptr(fire)] {
                        const auto open = queue.lock();
                        if (!open) return;
                        open->postAfter(interval, [weak] {
                            if (const auto alive = weak.lock()) (*alive)();
                        });
                    };
                    *fire = [arm, task = std::move(task)] {
                        arm();
                        task();
                    };
                    arm();
                    return RepeatingTimer([fire] {});
                }};
}

}  // namespace tarnik

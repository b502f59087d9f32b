#include "tests/support/ManualMainThread.h"

#include <utility>

namespace tarnik {
namespace {

struct Repetition : std::enable_shared_from_this<Repetition> {
    Repetition(std::weak_ptr<ManualQueue> on, Seconds every, MainThread::Task what)
        : queue(std::move(on)), interval(every), task(std::move(what)) {}

    void arm() {
        if (const auto open = queue.lock()) {
            open->postAfter(interval, [self = shared_from_this()] {
                if (self->ended) return;
                self->arm();
                self->task();
            });
        }
    }

    const std::weak_ptr<ManualQueue> queue;
    const Seconds interval;
    const MainThread::Task task;
    bool ended = false;
};

}  // namespace

MainThread ManualMainThread::record() const {
    return {.post = [queue = queue_](MainThread::Task task) { queue->post(std::move(task)); },
            .repeat =
                [weak = std::weak_ptr(queue_)](Seconds interval, MainThread::Task task) {
                    auto repetition = std::make_shared<Repetition>(weak, interval, std::move(task));
                    repetition->arm();
                    return RepeatingTimer([repetition] { repetition->ended = true; });
                }};
}

}  // namespace tarnik

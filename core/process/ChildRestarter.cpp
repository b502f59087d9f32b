#include "core/process/ChildRestarter.h"

#include <utility>

namespace tarnik {

void ChildRestarter::Run::post(SerialQueue::Task task) const {
    const auto queue = queue_.lock();
    if (!queue) return;
    queue->post([current = current_, task = std::move(task)] {
        if (!current.expired()) task();
    });
}

ChildRestarter::ChildRestarter(std::shared_ptr<SerialQueue> queue, std::function<void()> start)
    : queue_(std::move(queue)), start_(std::move(start)) {}

ChildRestarter::Run ChildRestarter::beginRun() {
    current_ = std::make_shared<int>();
    Run run;
    run.queue_ = queue_;
    run.current_ = current_;
    return run;
}

void ChildRestarter::endRun() {
    current_.reset();
}

void ChildRestarter::restartAfter(Seconds delay) {
    cancelRestart();
    pendingRestart_ = queue_->postAfter(delay, [this] {
        pendingRestart_.reset();
        start_();
    });
}

void ChildRestarter::cancelRestart() {
    if (pendingRestart_) queue_->cancel(*pendingRestart_);
    pendingRestart_.reset();
}

}  // namespace tarnik

#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "core/foundation/SerialQueue.h"
#include "core/foundation/TaskSchedule.h"

namespace tarnik {

// A clock that only a test advances.
class ManualClock {
public:
    TimePoint now() const { return now_; }
    void set(TimePoint now) { now_ = now; }

private:
    std::atomic<TimePoint> now_{TimePoint(std::chrono::hours(1))};
};

// A serial queue without a thread. A posted task runs at once on the posting thread, unless a task is running
// or the queue is held; then it waits. Delayed tasks run in advance(), with the clock at their due time.
class ManualQueue final : public SerialQueue {
public:
    explicit ManualQueue(std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>())
        : clock_(std::move(clock)) {}

    void post(Task task) override;
    Timer postAfter(Seconds delay, Task task) override;
    void cancel(Timer timer) override;
    void run(const Task& task) override { post(task); }
    void close() override;

    void advance(Seconds by);

    // Between hold() and letGo() posted tasks wait for runWaiting() or advance().
    void hold() { holding_ = true; }
    void letGo() {
        holding_ = false;
        runWaiting();
    }
    bool isHolding() const { return holding_; }

    // Runs the due tasks. Returns true if there were any.
    bool runWaiting();

private:
    std::shared_ptr<ManualClock> clock_;
    std::recursive_mutex running_;  // locked while a task runs, so that other threads wait
    std::mutex mutex_;
    TaskSchedule schedule_;
    std::atomic<bool> holding_ = false;
    bool draining_ = false;
    bool closed_ = false;
};

}  // namespace tarnik

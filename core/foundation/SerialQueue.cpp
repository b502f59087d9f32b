#include "core/foundation/SerialQueue.h"

#include <condition_variable>
#include <future>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "core/foundation/TaskSchedule.h"
#include "core/foundation/ThreadName.h"

namespace tarnik {
namespace {

class ThreadQueue final : public SerialQueue {
public:
    explicit ThreadQueue(const std::string& label)
        : thread_([state = state_, label] {
              setThreadName(label);
              state->work();
          }) {}

    ~ThreadQueue() override {
        close();
        // The last holder may be a task of this very queue; its thread can't wait for itself.
        if (onOwnThread())
            thread_.detach();
        else
            thread_.join();
    }
    ThreadQueue(const ThreadQueue&) = delete;
    ThreadQueue& operator=(const ThreadQueue&) = delete;

    void post(Task task) override { state_->push(Seconds::zero(), std::move(task)); }

    Timer postAfter(Seconds delay, Task task) override { return state_->push(delay, std::move(task)); }

    void cancel(Timer timer) override {
        std::optional<Task> dropped;  // goes after the lock: what it holds may call back in
        const std::lock_guard lock(state_->mutex);
        dropped = state_->schedule.cancel(timer);
    }

    void run(const Task& task) override {
        // A dropped task breaks its promise, which ends the wait as well.
        auto done = std::make_shared<std::promise<void>>();
        auto finished = done->get_future();
        post([done = std::move(done), &task] {
            task();
            done->set_value();
        });
        finished.wait();
    }

    void close() override {
        dropWaiting();
        if (onOwnThread()) return;
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [this] { return !state_->busy; });
    }

private:
    // Shared with the thread, which may outlive the queue by its last task.
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        TaskSchedule schedule;
        bool busy = false;
        bool closed = false;

        Timer push(Seconds delay, Task task) {
            const std::lock_guard lock(mutex);
            if (closed) return 0;
            const Timer timer = schedule.push(after(steadyNow(), delay), std::move(task));
            changed.notify_all();
            return timer;
        }

        void work() {
            std::unique_lock lock(mutex);
            while (!closed) {
                if (auto task = schedule.take(steadyNow())) {
                    runOne(lock, std::move(*task));
                } else if (const auto due = schedule.nextDue()) {
                    changed.wait_until(lock, *due);
                } else {
                    changed.wait(lock);
                }
            }
        }

        void runOne(std::unique_lock<std::mutex>& lock, Task task) {
            busy = true;
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
            busy = false;
            if (closed) changed.notify_all();
        }
    };

    // Closes at once. What the dropped tasks hold goes without the lock: it may call back in.
    void dropWaiting() {
        TaskSchedule dropped;
        const std::lock_guard lock(state_->mutex);
        state_->closed = true;
        std::swap(dropped, state_->schedule);
        state_->changed.notify_all();
    }

    bool onOwnThread() const { return std::this_thread::get_id() == thread_.get_id(); }

    std::shared_ptr<State> state_ = std::make_shared<State>();
    std::thread thread_;
};

}  // namespace

std::shared_ptr<SerialQueue> SerialQueue::withThread(const std::string& label) noexcept {
    return std::make_shared<ThreadQueue>(label);
}

}  // namespace tarnik

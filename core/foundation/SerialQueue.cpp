#include "core/foundation/SerialQueue.h"

#include <future>
#include <optional>
#include <thread>
#include <utility>

#include "core/foundation/Mutex.h"
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
        // A task of this queue may release the last reference, and the thread can't join itself.
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
        std::optional<Task> dropped;  // destroyed unlocked, because its destructor may call this queue
        const MutexLock lock(state_->mutex);
        dropped = state_->schedule.cancel(timer);
    }

    void run(const Task& task) override {
        // A dropped task destroys its promise, which also ends the wait.
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
        MutexLock lock(state_->mutex);
        while (state_->busy) state_->changed.wait(lock);
    }

private:
    // Shared with the thread, whose last task may outlive the queue.
    struct State {
        Mutex mutex;
        Condition changed;
        TaskSchedule schedule TARNIK_GUARDED_BY(mutex);
        bool busy TARNIK_GUARDED_BY(mutex) = false;
        bool closed TARNIK_GUARDED_BY(mutex) = false;

        Timer push(Seconds delay, Task task) {
            const MutexLock lock(mutex);
            if (closed) return 0;
            const Timer timer = schedule.push(after(steadyNow(), delay), std::move(task));
            changed.notifyAll();
            return timer;
        }

        void work() {
            MutexLock lock(mutex);
            while (!closed) {
                if (auto task = schedule.take(steadyNow())) {
                    busy = true;
                    lock.unlock();
                    (*task)();
                    task.reset();
                    lock.lock();
                    busy = false;
                    if (closed) changed.notifyAll();
                } else if (const auto due = schedule.nextDue()) {
                    changed.waitUntil(lock, *due);
                } else {
                    changed.wait(lock);
                }
            }
        }
    };

    // Closes the queue. The dropped tasks are destroyed without the lock, because their destructors may call
    // this queue.
    void dropWaiting() {
        TaskSchedule dropped;
        const MutexLock lock(state_->mutex);
        state_->closed = true;
        std::swap(dropped, state_->schedule);
        state_->changed.notifyAll();
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

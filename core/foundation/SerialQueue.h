#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/foundation/Time.h"

namespace tarnik {

// Runs tasks one after the other, in the order of their due times. A task without a delay is due when it is
// posted.
//
// An interface, so that tests can replace the thread and the clock. Each stateful class owns one queue and
// uses its own fields on that queue only.
//
// The owner closes the queue in its destructor, so that tasks may use a plain pointer to the owner. Other
// users, such as a child's exit callback, hold a weak reference to the queue.
class SerialQueue {
public:
    using Task = std::function<void()>;

    // Identifies one delayed task. Never repeats in a queue.
    using Timer = unsigned long long;

    // Makes a queue with a thread named `label`. The thread sleeps while no task is due. Ends the program if
    // no thread can be started.
    static std::shared_ptr<SerialQueue> withThread(const std::string& label) noexcept;

    virtual ~SerialQueue() = default;

    // Call these from any thread, even from a task. They do nothing after close().
    virtual void post(Task task) = 0;
    virtual Timer postAfter(Seconds delay, Task task) = 0;
    virtual void cancel(Timer timer) = 0;

    // Posts `task` and waits until the task has run or is dropped. Never call run() from a task of this
    // queue.
    virtual void run(const Task& task) = 0;

    // Drops the waiting tasks and waits for the running one, unless that task is the caller.
    virtual void close() = 0;
};

}  // namespace tarnik

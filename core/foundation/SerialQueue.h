#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/foundation/Time.h"

namespace tarnik {

// Runs tasks one after the other, in the order they came; delayed ones when they are due.
//
// An interface, because time is an effect: the real one has a thread and the steady clock, the one for tests
// has neither and is moved by hand. Each stateful class owns one and touches its fields only on it.
//
// Its owner closes it in its destructor, so that tasks may use the owner without holding it. Others, such as
// a child's exit callback, hold it weakly.
class SerialQueue {
public:
    using Task = std::function<void()>;

    // Names one delayed task. Only ever counts up.
    using Timer = unsigned long long;

    // A queue with a thread of its own, named `label`. It sleeps while nothing is due. Made at the program's
    // start; where not even then a thread can be had, the program ends.
    static std::shared_ptr<SerialQueue> withThread(const std::string& label) noexcept;

    virtual ~SerialQueue() = default;

    // Call these from any thread, also from a task. After close() they do nothing.
    virtual void post(Task task) = 0;
    virtual Timer postAfter(Seconds delay, Task task) = 0;
    virtual void cancel(Timer timer) = 0;

    // Runs `task` and waits until it is done; behind what was posted before. Never from a task of this queue.
    virtual void run(const Task& task) = 0;

    // Drops what has not started, and waits for the running task, except when called from it.
    virtual void close() = 0;
};

}  // namespace tarnik

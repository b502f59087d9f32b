#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace tarnik {

// Runs each slow task, such as a download, on its own detached thread. A task owns all that it uses and posts
// its result to the main thread.
//
// Created by Application. Copies share one count of running tasks.
class BackgroundTasks {
public:
    using Task = std::function<void()>;

    // Returns false if the system can't create a thread. Call from any thread.
    bool start(const std::string& label, Task task) const;

    // Returns true if no task runs. Otherwise the program must exit without destroying static objects,
    // because a task may still use them.
    bool isIdle() const { return *running_ == 0; }

private:
    std::shared_ptr<std::atomic<int>> running_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace tarnik

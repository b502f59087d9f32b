#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace tarnik {

// Work that takes as long as the network does, each piece on a thread of its own that nobody joins. A piece
// holds only what it was given, and hands its result to the main thread.
//
// Made by main(). Copies share the count.
class BackgroundTasks {
public:
    using Task = std::function<void()>;

    // Whether it was started: false when the system has no thread to spare. From any thread.
    bool start(const std::string& label, Task task) const;

    // Nothing is under way. Otherwise the program must end without tearing down what its threads may use.
    bool isIdle() const { return *running_ == 0; }

private:
    std::shared_ptr<std::atomic<int>> running_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace tarnik

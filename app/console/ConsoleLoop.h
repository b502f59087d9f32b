#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/platform/MainThread.h"
#include "core/foundation/Mutex.h"
#include "core/foundation/TaskSchedule.h"
#include "core/process/Spawner.h"

namespace tarnik {

// The event loop of a program without a window. Waits for a line of input, a posted task, or the due time of
// a repeated task.
//
// Created and run by runConsole(). Tasks that are still queued when run() returns never run.
class ConsoleLoop : public std::enable_shared_from_this<ConsoleLoop> {
public:
    using Task = std::function<void()>;

    static constexpr std::size_t longestLine = 65536;

    struct Handlers {
        std::function<void(const std::string&)> onLine;  // without the line feed
        std::function<void()> onLineTooLong;             // once for each line over longestLine
        std::function<void()> onEndOfInput;
    };

    // `wake` is a new pipe. post() writes to it to wake the loop.
    ConsoleLoop(int inputFd, Spawner::Pipe wake);

    // Queues `task` for the main thread. Call from any thread.
    void post(Task task);

    // Returns operations that do nothing after the loop has been destroyed.
    MainThread mainThread();

    // Makes run() return after the tasks that were posted earlier have run. Call from any thread.
    void quit();

    // Start and stop reading input. Input that isn't read stays in the terminal or pipe. Main thread only.
    void openInput() { reading_ = true; }
    void closeInput() { reading_ = false; }

    void run(const Handlers& handlers);

private:
    RepeatingTimer repeat(Seconds interval, const Task& task);
    void schedule(const std::shared_ptr<bool>& repeats, Seconds interval, const Task& task);
    int millisecondsToNextDue() const;
    void runDue();
    void readInput(const Handlers& handlers);
    void runPosted();

    const int inputFd_;
    Spawner::Pipe wake_;
    bool reading_ = false;
    bool running_ = true;
    bool skipping_ = false;  // true while the rest of a too long line is ignored
    std::string partial_;
    TaskSchedule due_;  // repeated tasks

    Mutex mutex_;
    std::vector<Task> posted_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik

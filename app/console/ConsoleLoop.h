#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/platform/MainThread.h"
#include "core/foundation/TaskSchedule.h"
#include "core/process/Spawner.h"

namespace tarnik {

// The main thread of a program without a window: sleeps until there is a line of input, a posted task, or a
// repeated one is due.
//
// Made and run by main(). What was posted when it goes is dropped.
class ConsoleLoop : public std::enable_shared_from_this<ConsoleLoop> {
public:
    using Task = std::function<void()>;

    static constexpr std::size_t longestLine = 65536;

    struct Handlers {
        std::function<void(const std::string&)> onLine;  // without its line feed
        std::function<void()> onLineTooLong;             // once for each line over longestLine
        std::function<void()> onEndOfInput;
    };

    // `wake` is a fresh pipe.
    ConsoleLoop(int inputFd, Spawner::Pipe wake);

    // Runs `task` on the main thread, soon. Call from any thread.
    void post(Task task);

    // This loop as the shell sees it; harmless once the loop is gone.
    MainThread mainThread();

    // Ends run() after what was posted before. Call from any thread.
    void quit();

    // Reads input from now on; what was typed before waits in the terminal or pipe. Main thread, as below.
    void openInput() { reading_ = true; }

    // Reads no more input.
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
    bool skipping_ = false;  // the rest of a line that was too long
    std::string partial_;
    TaskSchedule due_;  // of the repeated tasks

    std::mutex mutex_;
    std::vector<Task> posted_;  // guarded by mutex_
};

}  // namespace tarnik

#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "app/platform/MainThread.h"
#include "tests/support/ManualQueue.h"

namespace tarnik {

// A main thread that a test moves by hand: posted tasks wait for run(), timers for advance().
class ManualMainThread {
public:
    explicit ManualMainThread(std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>())
        : inner_(std::make_shared<Inner>(std::move(clock))) {}

    MainThread record() const;

    // Runs what was posted, and what those tasks post.
    enum class Ran { none, some };
    Ran run();

    // Moves the clock, firing timers at their times, each followed by run().
    void advance(Seconds by);

private:
    struct Timer {
        Seconds interval;
        TimePoint due;
        MainThread::Task task;
    };
    struct Inner {
        explicit Inner(std::shared_ptr<ManualClock> with) : clock(std::move(with)) {}

        const std::shared_ptr<ManualClock> clock;
        std::mutex mutex;  // guards what follows: tasks are posted from any thread
        std::vector<MainThread::Task> posted;
        std::map<int, Timer> timers;
        int lastTimer = 0;
    };

    std::shared_ptr<Inner> inner_;
};

}  // namespace tarnik

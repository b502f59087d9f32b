#include "core/process/ChildProcess.h"

#include <csignal>
#include <future>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {

using namespace std::chrono_literals;

constexpr pid_t unused = 1 << 30;  // above every real pid

TEST(ChildProcess, sendsNoSignalAfterItWasReaped) {
    std::vector<int> signals;
    ChildProcess child(unused, [&](pid_t, int number) { signals.push_back(number); });
    child.signal(SIGUSR1);
    std::future<void> sending;
    child.markReaped([&] {
        // From here on the pid may be reused: a concurrent signal() must wait and then do nothing.
        sending = std::async(std::launch::async, [&] { child.signal(SIGTERM); });
        EXPECT_EQ(sending.wait_for(20ms), std::future_status::timeout);
        return ExitStatus::exited(3);
    });
    sending.get();
    child.stop(StopSequences::node);
    EXPECT_EQ(signals, std::vector{SIGUSR1});
    EXPECT_EQ(child.exitStatus(), ExitStatus::exited(3));
}

// Signals and, with a minus, the seconds of each wait.
TEST(ChildProcess, stopsWithTermThenKill) {
    const std::vector<int> all{SIGTERM, -3, SIGKILL, -5};
    for (const auto& [endsAt, expected] :
         {std::pair(SIGTERM, std::vector{SIGTERM, -3}), {SIGKILL, all}, {0, all}}) {
        std::vector<int> steps;
        ChildProcess* waited = nullptr;
        ChildProcess child(
            unused, [&](pid_t, int number) { steps.push_back(number); },
            [&](Seconds time) {
                if (steps.back() == endsAt) waited->markReaped([&] { return ExitStatus::signaled(endsAt); });
                steps.push_back(-static_cast<int>(time.count()));
                return Seconds::zero();
            });
        waited = &child;
        child.stop(StopSequences::connectCommand);
        EXPECT_EQ(steps, expected);
        EXPECT_EQ(child.isRunning(), endsAt == 0);
    }
}

TEST(ExitStatus, ignoresTheCoreDumpFlag) {
    EXPECT_EQ(ExitStatus::fromWaitStatus(SIGSEGV | 0x80), ExitStatus::signaled(SIGSEGV));
}

}  // namespace tarnik

#include "core/process/ChildProcess.h"

#include <csignal>
#include <future>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;

// A child that remembers the signals it got. Its pid is none that a stray kill could harm.
class ChildProcessTest : public testing::Test {
protected:
    std::vector<int> signals_;
    std::promise<void> killed_;
    ChildProcess child_{1 << 30, [this](pid_t, int number) {
                            signals_.push_back(number);
                            if (number == SIGKILL) killed_.set_value();
                        }};
};

TEST_F(ChildProcessTest, sendsNothingOnceReaped) {
    child_.signal(SIGUSR1);
    std::future<void> sending;
    child_.markReaped([&] {
        // From here on the pid may be another's: a signal on its way has to wait, and then goes nowhere.
        sending = std::async(std::launch::async, [&] { child_.signal(SIGTERM); });
        EXPECT_EQ(sending.wait_for(20ms), std::future_status::timeout);
        return ExitStatus::exited(3);
    });
    sending.get();
    child_.stop(Seconds(10));
    EXPECT_EQ(signals_, std::vector{SIGUSR1});
    EXPECT_EQ(child_.exitStatus(), ExitStatus::exited(3));
}

TEST_F(ChildProcessTest, stopsByTermAndThenByKill) {
    auto reaper = std::async(std::launch::async, [&] {
        killed_.get_future().wait();
        child_.markReaped([] { return ExitStatus::signaled(SIGKILL); });
    });
    EXPECT_EQ(child_.waitForExit(Seconds(0)), std::nullopt);
    child_.stop(Seconds(0.01));
    EXPECT_EQ(signals_, (std::vector{SIGTERM, SIGKILL}));
    EXPECT_EQ(child_.exitStatus(), ExitStatus::signaled(SIGKILL));
}

TEST(ExitStatus, isTheSignalOfACrashThatLeftACoreImage) {
    EXPECT_EQ(ExitStatus::fromWaitStatus(SIGSEGV | 0x80), ExitStatus::signaled(SIGSEGV));
}

}  // namespace
}  // namespace tarnik

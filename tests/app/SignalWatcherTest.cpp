#include "app/SignalWatcher.h"

#include <cerrno>
#include <csignal>
#include <future>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

class SignalWatcherTest : public testing::Test {
protected:
    SignalWatcherTest() { ::pthread_sigmask(SIG_SETMASK, nullptr, &before_); }
    ~SignalWatcherTest() override { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

// Darwin's sigwait(3) returns 0 after an interruption and doesn't store a number.
TEST_F(SignalWatcherTest, reportsNoSignalForAnInterruptedWait) {
    std::vector<int> reported;
    std::promise<void> over;
    int waits = 0;
    {
        const SignalWatcher watcher([&](int signal) { reported.push_back(signal); },
                                    [&](const sigset_t* set, int* signal) {
                                        ++waits;
                                        if (waits == 2) *signal = SIGTERM;
                                        if (waits < 4) return 0;
                                        over.set_value();
                                        return ::sigwait(set, signal);
                                    });
        over.get_future().wait();
    }
    EXPECT_EQ(reported, std::vector{SIGTERM});
}

TEST_F(SignalWatcherTest, leavesAnIgnoredHangupIgnored) {
    for (const bool isIgnored : {false, true}) {
        const auto handler = std::signal(SIGHUP, isIgnored ? SIG_IGN : SIG_DFL);
        std::promise<bool> waitsForHangup;
        {
            const SignalWatcher watcher([](int) {},
                                        [&](const sigset_t* set, int*) {
                                            waitsForHangup.set_value(sigismember(set, SIGHUP) == 1);
                                            return EINTR;
                                        });
            EXPECT_NE(waitsForHangup.get_future().get(), isIgnored);
        }
        std::signal(SIGHUP, handler);
    }
}

}  // namespace
}  // namespace tarnik

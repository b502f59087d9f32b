#include "app/SignalWatcher.h"

#include <cerrno>
#include <csignal>
#include <future>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {

// Darwin's sigwait(3) returns 0 after an interruption and doesn't store a number.
TEST(SignalWatcher, reportsNoSignalForAnInterruptedWait) {
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

TEST(SignalWatcher, leavesAnIgnoredHangupIgnored) {
    for (const bool isIgnored : {false, true}) {
        const auto handler = std::signal(SIGHUP, isIgnored ? SIG_IGN : SIG_DFL);
        std::promise<bool> waitsForHangup;
        {
            const auto wait = [&](const sigset_t* set, int*) {
                waitsForHangup.set_value(sigismember(set, SIGHUP) == 1);
                return EINTR;
            };
            const SignalWatcher watcher([](int) {}, wait);
            EXPECT_NE(waitsForHangup.get_future().get(), isIgnored);
        }
        std::signal(SIGHUP, handler);
    }
}

}  // namespace tarnik

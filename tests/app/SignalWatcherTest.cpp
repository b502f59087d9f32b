#include "app/SignalWatcher.h"

#include <future>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

// Darwin's sigwait(3) returns 0 after an interruption and doesn't store a number.
TEST(SignalWatcher, reportsNoSignalForAnInterruptedWait) {
    sigset_t before;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &before);
    std::vector<int> reported;
    std::promise<void> over;
    {
        int waits = 0;
        const SignalWatcher watch([&](int signal) { reported.push_back(signal); },
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
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace
}  // namespace tarnik

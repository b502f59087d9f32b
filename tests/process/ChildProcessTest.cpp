#include "core/process/ChildProcess.h"

#include <csignal>
#include <future>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;

// A child that remembers the signals it got. Its pid is none that a stray kill could harm.
struct FakeChild {
    std::vector<int> signals;
    std::promise<void> killed;
    ChildProcess child{1 << 30, [this](pid_t, int number) {
                           signals.push_back(number);
                           if (number == SIGKILL) killed.set_value();
                       }};
};

TEST(ChildProcess, sendsNothingOnceReaped) {
    FakeChild f;
    f.child.signal(SIGUSR1);
    std::future<void> sending;
    f.child.markReaped([&] {
        // From here on the pid may be another's: a signal on its way has to wait, and then goes nowhere.
        sending = std::async(std::launch::async, [&] { f.child.signal(SIGTERM); });
        EXPECT_EQ(sending.wait_for(20ms), std::future_status::timeout);
        return ExitStatus::exited(3);
    });
    sending.get();
    f.child.stop(Seconds(10));
    EXPECT_EQ(f.signals, std::vector{SIGUSR1});
    EXPECT_EQ(f.child.exitStatus(), ExitStatus::exited(3));
}

TEST(ChildProcess, stopsByTermAndThenByKill) {
    FakeChild f;
    auto reaper = std::async(std::launch::async, [&] {
        f.killed.get_future().wait();
        f.child.markReaped([] { return ExitStatus::signaled(SIGKILL); });
    });
    EXPECT_EQ(f.child.waitForExit(Seconds(0)), std::nullopt);
    f.child.stop(Seconds(0.01));
    EXPECT_EQ(f.signals, (std::vector{SIGTERM, SIGKILL}));
    EXPECT_EQ(f.child.exitStatus(), ExitStatus::signaled(SIGKILL));
}

TEST(ChildProcess, readsAndDescribesHowAChildEnded) {
    struct Case {
        int word;
        ExitStatus status;
        const char* text;
        bool succeeded;
    };
    const Case cases[] = {
        {0x0000, ExitStatus::exited(0), "exit 0", true},
        {0x0300, ExitStatus::exited(3), "exit 3", false},
        {0xff00, ExitStatus::exited(255), "exit 255", false},
        {SIGTERM, ExitStatus::signaled(15), "signal 15", false},
        {SIGSEGV | 0x80, ExitStatus::signaled(11), "signal 11", false},  // with a core image
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ExitStatus::fromWaitStatus(c.word), c.status) << c.text;
        EXPECT_EQ(describe(c.status), c.text);
        EXPECT_EQ(c.status.succeeded(), c.succeeded) << c.text;
    }
}

}  // namespace
}  // namespace tarnik

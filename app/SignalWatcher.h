#pragma once

#include <atomic>
#include <csignal>
#include <functional>
#include <thread>

namespace tarnik {

// Calls `onSignal` on a thread of its own for SIGINT and SIGTERM, and for SIGHUP unless the program was
// started with SIGHUP ignored.
//
// Created by runDesktop(), runConsole() and runServe() before any other thread, so that all threads inherit
// the blocked signals and only this thread receives them. Children start with no signal blocked.
class SignalWatcher {
public:
    using Wait = std::function<int(const sigset_t*, int*)>;  // like sigwait(3)

    explicit SignalWatcher(std::function<void(int)> onSignal, Wait wait = ::sigwait);
    ~SignalWatcher();
    SignalWatcher(const SignalWatcher&) = delete;
    SignalWatcher& operator=(const SignalWatcher&) = delete;

private:
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

}  // namespace tarnik

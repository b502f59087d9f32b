#include "app/SignalWatcher.h"

#include <csignal>
#include <utility>

#include "core/foundation/ThreadName.h"

namespace tarnik {
namespace {

constexpr int wakeSignal = SIGUSR2;  // wakes the thread when its owner is destroyed

bool isIgnored(int signal) {
    struct sigaction now{};
    return ::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

// nohup starts a program with SIGHUP ignored. The program then outlives its terminal.
sigset_t watched() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, wakeSignal}) sigaddset(&set, signal);
    if (!isIgnored(SIGHUP)) sigaddset(&set, SIGHUP);
    return set;
}

}  // namespace

SignalWatcher::SignalWatcher(std::function<void(int)> onSignal, Wait wait) {
    const sigset_t set = watched();
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
    thread_ = std::thread([this, set, onSignal = std::move(onSignal), wait = std::move(wait)] {
        setThreadName("tarnik.signals");
        while (!ending_) {
            // Darwin's sigwait returns 0 after an interruption and doesn't store a number.
            int signal = 0;
            if (wait(&set, &signal) != 0) return;
            if (signal != 0 && signal != wakeSignal && !ending_) onSignal(signal);
        }
    });
}

SignalWatcher::~SignalWatcher() {
    ending_ = true;
    ::pthread_kill(thread_.native_handle(), wakeSignal);
    thread_.join();
}

}  // namespace tarnik

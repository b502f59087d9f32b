#include "core/process/ChildProcess.h"

#include <csignal>
#include <utility>

namespace tarnik {

ChildProcess::ChildProcess(pid_t pid) : ChildProcess(pid, [](pid_t to, int number) { ::kill(to, number); }) {}

ChildProcess::ChildProcess(pid_t pid, Kill kill, RealTime realTime)
    : pid_(pid), kill_(std::move(kill)), realTime_(std::move(realTime)) {}

std::optional<ExitStatus> ChildProcess::exitStatus() const {
    const MutexLock lock(mutex_);
    return status_;
}

std::optional<ExitStatus> ChildProcess::waitForExit(Seconds timeout) const {
    const TimePoint deadline = after(steadyNow(), realTime_(timeout));
    MutexLock lock(mutex_);
    while (!status_ && ended_.waitUntil(lock, deadline)) continue;
    return status_;
}

void ChildProcess::signal(int number) {
    const MutexLock lock(mutex_);
    if (!status_) kill_(pid_, number);
}

void ChildProcess::stop(StopSequence steps, UniqueFd input) {
    const auto perform = [&](StopAction action) {
        switch (action) {
            case StopAction::closeInput: input.reset(); break;
            case StopAction::terminate: signal(SIGTERM); break;
            case StopAction::kill: signal(SIGKILL); break;
        }
        return true;
    };
    runStopSequence(steps, perform, [this](Seconds timeout) { return waitForExit(timeout).has_value(); });
}

void ChildProcess::markReaped(const std::function<ExitStatus()>& reap) {
    {
        const MutexLock lock(mutex_);
        status_ = reap();
    }
    ended_.notifyAll();
}

}  // namespace tarnik

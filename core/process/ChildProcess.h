#pragma once

#include <functional>
#include <optional>

#include <sys/types.h>

#include "core/foundation/Mutex.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/ExitStatus.h"
#include "core/process/StopSequence.h"

namespace tarnik {

// A shared handle of a started child. Provides its exit status and the only way to signal it.
//
// Its reaper holds it until the child is reaped. Call from any thread.
//
//   from     event                to
//   running  the child is reaped  reaped: final, signal() does nothing
class ChildProcess {
public:
    using OnExit = std::function<void(ExitStatus)>;
    using Kill = std::function<void(pid_t, int)>;
    using RealTime = std::function<Seconds(Seconds)>;

    // `kill` sends a signal to a process that has not been reaped, as kill(2). `realTime` converts a time-out
    // to the time to block; tests with a fake clock replace it.
    explicit ChildProcess(pid_t pid);
    ChildProcess(pid_t pid, Kill kill, RealTime realTime = std::identity());

    pid_t pid() const { return pid_; }
    std::optional<ExitStatus> exitStatus() const;
    bool isRunning() const { return !exitStatus(); }

    // Waits at most `timeout`. Returns std::nullopt if the child still runs then.
    std::optional<ExitStatus> waitForExit(Seconds timeout) const;

    // Does nothing after the child was reaped, so that a reused pid is never signalled.
    void signal(int number);

    // Runs the steps until the child has ended. Closes `input` in the step closeInput, else on return. Blocks
    // for up to totalWait(steps), and returns then even if the child still runs.
    void stop(StopSequence steps, UniqueFd input = {});

    // Called once, by the reaper. Calls `reap`, which must not block, and stores its result, both under the
    // lock that signal() takes.
    void markReaped(const std::function<ExitStatus()>& reap);

private:
    const pid_t pid_;
    const Kill kill_;
    const RealTime realTime_;
    mutable Mutex mutex_;
    mutable Condition ended_;
    std::optional<ExitStatus> status_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik

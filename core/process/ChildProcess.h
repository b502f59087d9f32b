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

// A started child. Provides the child's exit status and the only way to signal the child.
//
// Shared by its users and by the reaper. The reaper keeps this object until OnExit has returned. Call from
// any thread.
//
//   from     event                to
//   running  the child is reaped  reaped: final, signal() does nothing
class ChildProcess {
public:
    using OnExit = std::function<void(ExitStatus)>;
    using Kill = std::function<void(pid_t, int)>;
    using RealTime = std::function<Seconds(Seconds)>;

    // `kill` sends a signal, as kill(2) does. It is called only before the child is reaped. `realTime`
    // returns the real time to wait for a time-out; tests shorten it.
    explicit ChildProcess(pid_t pid);
    ChildProcess(pid_t pid, Kill kill, RealTime realTime = std::identity());

    pid_t pid() const { return pid_; }
    std::optional<ExitStatus> exitStatus() const;
    bool isRunning() const { return !exitStatus(); }

    // Waits up to `timeout` for the exit. Returns std::nullopt on time-out.
    std::optional<ExitStatus> waitForExit(Seconds timeout) const;

    // Does nothing after the child was reaped, so that a reused pid is never signalled.
    void signal(int number);

    // Performs the steps until the child has ended. Closes `input` in the step closeInput, or on return.
    // Blocks for up to totalWait(steps). Returns even if the child survives all steps.
    void stop(StopSequence steps, UniqueFd input = {});

    // Called once, by the reaper. Calls `reap` and stores the result while it holds the lock of signal().
    // `reap` must not block.
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

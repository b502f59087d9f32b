#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

#include <sys/types.h>

#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/ExitStatus.h"
#include "core/process/StopSequence.h"

namespace tarnik {

// The shared handle of a started child: its end, once known, and the only way to signal it.
//
// Lives as long as anybody holds it; its reaper does until the child was reaped. Call from any thread.
//
//   from      event                        to
//   running   the reaper reports the end   reaped, for good; no signal is sent any more
class ChildProcess {
public:
    using OnExit = std::function<void(ExitStatus)>;
    using Kill = std::function<void(pid_t, int)>;
    using RealTime = std::function<Seconds(Seconds)>;

    // `kill` sends a signal to a process that has not been reaped, as kill(2). `realTime` returns how long to
    // block for a time-out: the same, unless time is made up.
    explicit ChildProcess(pid_t pid);
    ChildProcess(pid_t pid, Kill kill, RealTime realTime = std::identity());

    pid_t pid() const { return pid_; }
    std::optional<ExitStatus> exitStatus() const;
    bool isRunning() const { return !exitStatus(); }

    // Waits at most `timeout`; none if the child still runs then.
    std::optional<ExitStatus> waitForExit(Seconds timeout) const;

    // Does nothing once the child was reaped, so that a reused pid is never hit.
    void signal(int number);

    // Runs the steps until the child has ended. `input` is closed by the step closeInput, or on return.
    // Blocks for up to totalWait(steps), and returns then even if the child still runs.
    void stop(StopSequence steps, UniqueFd input = {});

    // For the one who reaps: runs `reap`, which must not wait, and stores what it returns under the lock that
    // signal() takes. Once only.
    void markReaped(const std::function<ExitStatus()>& reap);

private:
    const pid_t pid_;
    const Kill kill_;
    const RealTime realTime_;
    mutable std::mutex mutex_;
    mutable std::condition_variable ended_;
    std::optional<ExitStatus> status_;
};

}  // namespace tarnik

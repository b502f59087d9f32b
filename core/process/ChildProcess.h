#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

#include <sys/types.h>

#include "core/foundation/Time.h"
#include "core/process/ExitStatus.h"

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

    // What stop() allows a child after SIGKILL, beyond the caller's own grace.
    static constexpr Seconds killGrace = Seconds(5);

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

    // SIGTERM, up to `grace`, SIGKILL, up to killGrace. Returns then, whether or not the child ended.
    void stop(Seconds grace);

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

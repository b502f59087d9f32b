#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/driver/DriverHostDeps.h"
#include "core/driver/DriverSocketDirectory.h"

namespace tarnik {

// Keeps the desktop driver running while it is wanted: starts it on a private socket, tells where it listens
// once it does, starts it again after a growing delay when it ends, and stops it.
//
// One per application. Call from any thread, but not from inside `onEndpointChange` or `log`. A call waits
// for a start that is under way, unless isSuperseded ends that: for up to readinessTimeout, and 8 s more if
// the driver has to be stopped.
//
//   from          event                             to
//   off           enabled                           starting
//   starting      the socket answers                ready; the first delay is next again
//   starting      ends, too late, can't be started  restarting(delay); idle after the last delay
//   starting      a newer call waits                idle, until that call
//   starting      not in this build, no directory   idle
//   ready         ends                              restarting(delay)
//   restarting    delay passed                      starting
//   restarting, idle   enabled                      starting
//   any but off   permissionsChanged                starting; the first delay is next again
//   any           disabled, shutdown                off
//
// An endpoint is published in `ready` only. In `off`, `restarting` and `idle` nothing runs.
class DriverHost {
public:
    struct Setup {
        std::optional<std::string> executable;  // none: the build has no driver
        std::string applicationSupport;         // the folder that the socket directories are made in
        std::string hostBundleID;
        Environment inherited;  // the application's environment
    };

    using OnEndpointChange = std::function<void(const std::optional<CuaDriverEndpoint>&)>;
    using Log = std::function<void(const std::string&)>;

    // Starts nothing. `log` hears lower-case one-line messages; both callbacks run on the private queue.
    DriverHost(Setup setup, DriverHostDeps deps, Log log, OnEndpointChange onEndpointChange);

    // Stops what runs, as shutdown().
    ~DriverHost();
    DriverHost(const DriverHost&) = delete;
    DriverHost& operator=(const DriverHost&) = delete;

    // Returns when the driver is ready or has failed to start this time; when it is gone. Never fails.
    void setEnabled(bool enabled);

    // The driver notices new rights only in a new process: stops it, and starts it when it is wanted.
    void permissionsChanged();

    void shutdown();

    std::optional<CuaDriverEndpoint> currentEndpoint() const;
    bool isRunning() const;

    // May be stale once returned.
    std::optional<pid_t> runningPID() const;

private:
    using Generation = std::uint64_t;

    struct Running {
        Generation generation;
        std::shared_ptr<ChildProcess> child;
        DriverSocketDirectory directory;
        UniqueFd livenessWrite;  // the driver leaves when this closes
    };
    enum class Readiness { ready, exited, superseded, timedOut };

    void startIfNeeded();
    bool launch(const std::string& executable, const DriverSocketDirectory& directory);
    std::optional<SystemError> spawn(const std::string& executable, const DriverSocketDirectory& directory);
    Readiness awaitReadiness() const;
    void exited(Generation generation, ExitStatus status);
    void stopRunning();
    void forgetRunning();
    void reapStale() const;
    void scheduleRestart();
    void cancelRestart();
    void setEndpoint(const std::optional<CuaDriverEndpoint>& endpoint);

    const Setup setup_;
    const DriverHostDeps deps_;
    const Log log_;
    const OnEndpointChange onEndpointChange_;
    const std::shared_ptr<SerialQueue> queue_;  // everything below is touched only on it

    bool desired_ = false;
    std::optional<Running> running_;
    std::optional<CuaDriverEndpoint> endpoint_;
    Generation generation_ = 0;
    std::size_t restartAttempt_ = 0;  // the next of the restart delays
    std::optional<SerialQueue::Timer> pendingRestart_;
};

}  // namespace tarnik

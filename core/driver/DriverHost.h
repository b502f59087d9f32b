#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/driver/DriverLaunch.h"
#include "core/driver/DriverSocketDirectory.h"
#include "core/foundation/SystemError.h"
#include "core/process/ChildEvent.h"
#include "core/process/ChildProcess.h"
#include "core/process/ChildRestarter.h"

namespace tarnik {

// The effects and the times of DriverHost.
struct DriverHostDeps {
    using LaunchResult = std::expected<std::shared_ptr<ChildProcess>, SystemError>;
    // Returns a descriptor for one driver's output. An empty descriptor sends the output to /dev/null.
    using AttachOutput = std::function<UniqueFd()>;
    // Starts a driver. Its standard input is `livenessFd`, which the caller keeps.
    std::function<LaunchResult(const DriverLaunch&, int livenessFd, ChildProcess::OnExit onExit)> launch;
    std::function<bool(const std::string& socketPath)> socketReady;  // must not block
    std::function<void(Seconds)> sleep;                              // blocks the calling thread
    std::function<TimePoint()> now;
    Seconds readinessTimeout = Seconds(10);
    std::vector<Seconds> restartDelays{Seconds(1), Seconds(2), Seconds(4), Seconds(8), Seconds(10)};
    // Returns true while a newer call waits. A start in progress is then abandoned.
    std::function<bool()> isSuperseded = [] { return false; };
    OnChildEvent onEvent = [](const ChildEvent&) {};
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    static DriverHostDeps production(AttachOutput attachOutput = {});  // real children, the steady clock
};

// Keeps the desktop driver running while it is enabled: starts it on a private socket, publishes the endpoint
// once the socket answers, restarts the driver after a growing delay when it exits, and stops it.
//
// One per application. Call from any thread, but not from a callback. A call waits for a start in progress:
// up to 2 s for each leftover driver, readinessTimeout, and 8 s to stop the new driver.
//
//   from          event                             to
//   off           enabled                           starting
//   starting      the socket answers                ready; the delays are reset
//   starting      exits, times out, can't start     restarting; idle after the last delay
//   starting      superseded, no driver, no folder  idle
//   ready         exits                             restarting; idle after the last delay
//   restarting    delay passed                      starting
//   restarting, idle   enabled                      starting
//   any but off   permissionsChanged                starting; the delays are reset
//   any           disabled, shutdown                off
//
// The endpoint is published in `ready` only. In `off` the driver may still run until setEnabled() returns.
class DriverHost {
public:
    struct Setup {
        std::optional<std::string> executable;  // std::nullopt if the build has no driver
        std::string applicationSupport;         // the folder for the socket directories
        std::string hostBundleID;
        Environment inherited;  // the application's environment
    };
    using OnEndpointChange = std::function<void(const std::optional<CuaDriverEndpoint>&)>;
    using Log = std::function<void(const std::string&)>;

    // Starts no driver. `log` receives lower-case one-line messages. Both callbacks run on the private queue.
    DriverHost(Setup setup, DriverHostDeps deps, Log log, OnEndpointChange onEndpointChange);

    ~DriverHost();  // calls shutdown()
    DriverHost(const DriverHost&) = delete;
    DriverHost& operator=(const DriverHost&) = delete;

    // Blocks until the driver is ready, has failed or has stopped. Reports failures to `log` and onEvent.
    void setEnabled(bool enabled);

    // Restarts an enabled driver, because new permissions apply only to a new process.
    void permissionsChanged();
    void shutdown();

    std::optional<CuaDriverEndpoint> currentEndpoint() const;
    bool isRunning() const;
    std::optional<pid_t> runningPID() const;  // may be stale once returned

private:
    enum class State { off, starting, ready, restarting, idle };
    enum class Readiness { ready, exited, superseded, timedOut };
    struct Running {
        std::shared_ptr<ChildProcess> child;
        DriverSocketDirectory directory;
        UniqueFd livenessWrite;  // the driver quits when this closes
    };

    void startIfNeeded();
    void launch(const DriverSocketDirectory& directory);
    std::optional<SystemError> spawn(const DriverSocketDirectory& directory);
    Readiness awaitReadiness() const;
    void exited(ExitStatus status);
    void stopRunning();
    void forgetRunning();
    void reapStale() const;
    void scheduleRestart();
    void setState(State state);

    const Setup setup_;
    const DriverHostDeps deps_;
    const Log log_;
    const OnEndpointChange onEndpointChange_;
    const std::shared_ptr<SerialQueue> queue_;  // the fields below are used on this queue only
    ChildRestarter restarter_;
    State state_ = State::off;
    std::optional<Running> running_;
    std::optional<CuaDriverEndpoint> endpoint_;
    std::size_t restartAttempt_ = 0;  // the index of the next restart delay
};

}  // namespace tarnik

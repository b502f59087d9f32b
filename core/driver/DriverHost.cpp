#include "core/driver/DriverHost.h"

#include <utility>

#include <unistd.h>

#include "core/process/Spawner.h"

namespace tarnik {

namespace {

constexpr Seconds readinessCheckInterval = Seconds(0.05);

}  // namespace

DriverHost::DriverHost(Setup setup, DriverHostDeps deps, Log log, OnEndpointChange onEndpointChange)
    : setup_(std::move(setup)),
      deps_(std::move(deps)),
      log_(std::move(log)),
      onEndpointChange_(std::move(onEndpointChange)),
      queue_(deps_.makeQueue("tarnik.driver-host")),
      restarter_(queue_, [this] { startIfNeeded(); }) {}

DriverHost::~DriverHost() {
    shutdown();
    queue_->close();
}

void DriverHost::setEnabled(bool enabled) {
    queue_->run([this, enabled] {
        if (!enabled || state_ == State::off) restartAttempt_ = 0;
        if (enabled) return startIfNeeded();
        restarter_.cancelRestart();
        setState(State::off);
        const bool wasRunning = running_.has_value();
        stopRunning();
        if (wasRunning) deps_.onEvent(ChildEvents::Stopped{});
    });
}

void DriverHost::permissionsChanged() {
    queue_->run([this] {
        restartAttempt_ = 0;
        if (state_ == State::off) return;
        if (running_) {
            setState(State::starting);
            stopRunning();
            deps_.onEvent(ChildEvents::Stopped{});
        }
        startIfNeeded();
    });
}

void DriverHost::shutdown() {
    setEnabled(false);
}

std::optional<CuaDriverEndpoint> DriverHost::currentEndpoint() const {
    std::optional<CuaDriverEndpoint> endpoint;
    queue_->run([&] { endpoint = endpoint_; });
    return endpoint;
}

bool DriverHost::isRunning() const {
    return runningPID().has_value();
}

std::optional<pid_t> DriverHost::runningPID() const {
    std::optional<pid_t> pid;
    queue_->run([&] {
        if (running_) pid = running_->child->pid();
    });
    return pid;
}

// A start replaces a pending restart.
void DriverHost::startIfNeeded() {
    if (running_) return;
    restarter_.cancelRestart();
    setState(State::starting);
    if (deps_.isSuperseded()) return setState(State::idle);
    if (!setup_.executable) {
        log_("the desktop driver isn't in this build of the app");
        deps_.onEvent(ChildEvents::StartFailed{"this build of tarnik has none"});
        return setState(State::idle);
    }
    reapStale();
    const auto directory = DriverSocketDirectory::create(setup_.applicationSupport);
    if (!directory) {
        log_(describe(directory.error()));
        deps_.onEvent(ChildEvents::StartFailed{describe(directory.error())});
        deps_.onEvent(ChildEvents::GivenUp{});
        return setState(State::idle);
    }
    launch(*directory);
}

void DriverHost::launch(const DriverSocketDirectory& directory) {
    if (const auto error = spawn(directory)) {
        directory.cleanup();
        log_("the desktop driver didn't start: " + describe(*error));
        deps_.onEvent(ChildEvents::StartFailed{describe(*error)});
        return scheduleRestart();
    }
    if (!directory.writeProcessIdentifier(running_->child->pid())) {
        log_("couldn't record the desktop driver's pid");
        stopRunning();
        deps_.onEvent(ChildEvents::StartFailed{"its process id couldn't be recorded"});
        return scheduleRestart();
    }
    switch (awaitReadiness()) {
        case Readiness::ready:
            setState(State::ready);
            restartAttempt_ = 0;
            return log_("desktop driver ready");
        case Readiness::exited: {
            const auto status = running_->child->exitStatus();
            forgetRunning();
            log_("the desktop driver stopped before it was ready (" + describe(*status) + ")");
            deps_.onEvent(ChildEvents::Ended{*status});
            return scheduleRestart();
        }
        case Readiness::timedOut:
            log_("the desktop driver didn't become ready in time");
            stopRunning();
            deps_.onEvent(ChildEvents::StartFailed{"it wasn't ready in time"});
            return scheduleRestart();
        case Readiness::superseded:
            stopRunning();
            deps_.onEvent(ChildEvents::Stopped{});
            return scheduleRestart();
    }
}

std::optional<SystemError> DriverHost::spawn(const DriverSocketDirectory& directory) {
    auto liveness = Spawner::pipe();
    if (!liveness) return liveness.error();
    const auto recipe = DriverLaunch::make({.executable = *setup_.executable,
                                            .socketPath = directory.socketPath,
                                            .hostBundleID = setup_.hostBundleID,
                                            .hostPID = ::getpid(),
                                            .inherited = setup_.inherited});
    auto child =
        deps_.launch(recipe, liveness->readEnd.get(), [this, run = restarter_.beginRun()](ExitStatus status) {
            run.post([this, status] { exited(status); });
        });
    if (!child) {
        restarter_.endRun();
        return child.error();
    }
    const auto pid = (*child)->pid();
    running_ = Running{std::move(*child), directory, std::move(liveness->writeEnd)};
    deps_.onEvent(ChildEvents::Started{pid});
    return std::nullopt;
}

// Blocks the queue, so `running_` doesn't change during the wait. Returns early if a newer call waits.
DriverHost::Readiness DriverHost::awaitReadiness() const {
    const TimePoint deadline = after(deps_.now(), deps_.readinessTimeout);
    while (true) {
        if (!running_->child->isRunning()) return Readiness::exited;
        if (deps_.isSuperseded()) return Readiness::superseded;
        if (deps_.socketReady(running_->directory.socketPath)) return Readiness::ready;
        deps_.sleep(readinessCheckInterval);
        if (deps_.now() > deadline) return Readiness::timedOut;
    }
}

void DriverHost::exited(ExitStatus status) {
    deps_.onEvent(ChildEvents::Ended{status});
    scheduleRestart();
    forgetRunning();
    log_("the desktop driver stopped unexpectedly (" + describe(status) + ")");
}

// The state is not `ready` here, so the endpoint is withdrawn before the driver stops.
void DriverHost::stopRunning() {
    if (!running_) return reapStale();
    running_->child->stop(StopSequences::driver, std::move(running_->livenessWrite));
    forgetRunning();
}

// Also makes the restarter drop a later report of the driver's exit.
void DriverHost::forgetRunning() {
    restarter_.endRun();
    const auto ended = std::exchange(running_, std::nullopt);
    ended->directory.cleanup();
}

void DriverHost::reapStale() const {
    DriverSocketDirectory::reapStale(setup_.applicationSupport, setup_.executable.value_or(""),
                                     DriverSocketDirectory::Processes::production());
}

// After the last delay, only a call starts the driver again. If a newer call waits, that call decides about
// the restart.
void DriverHost::scheduleRestart() {
    if (deps_.isSuperseded()) return setState(State::idle);
    if (restartAttempt_ >= deps_.restartDelays.size()) {
        deps_.onEvent(ChildEvents::GivenUp{});
        return setState(State::idle);
    }
    const Seconds delay = deps_.restartDelays[restartAttempt_++];
    restarter_.restartAfter(delay);
    setState(State::restarting);
    deps_.onEvent(ChildEvents::RestartPlanned{delay});
}

// The only place that changes the state and the endpoint.
void DriverHost::setState(State state) {
    state_ = state;
    std::optional<CuaDriverEndpoint> endpoint;
    if (state == State::ready)
        endpoint = {.socketPath = running_->directory.socketPath, .binaryPath = *setup_.executable};
    if (endpoint == endpoint_) return;
    endpoint_ = std::move(endpoint);
    onEndpointChange_(endpoint_);
}

}  // namespace tarnik

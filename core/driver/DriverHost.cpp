#include "core/driver/DriverHost.h"

#include <utility>

#include <unistd.h>

#include "core/process/Spawner.h"

namespace tarnik {

namespace {

constexpr Seconds lookInterval = Seconds(0.05);

}  // namespace

DriverHost::DriverHost(Setup setup, DriverHostDeps deps, Log log, OnEndpointChange onEndpointChange)
    : setup_(std::move(setup)),
      deps_(std::move(deps)),
      log_(std::move(log)),
      onEndpointChange_(std::move(onEndpointChange)),
      queue_(deps_.makeQueue("tarnik.driver-host")) {}

DriverHost::~DriverHost() {
    shutdown();
    queue_->close();
}

void DriverHost::setEnabled(bool enabled) {
    queue_->run([this, enabled] {
        if (!enabled || !desired_) restartAttempt_ = 0;
        desired_ = enabled;
        if (enabled) return startIfNeeded();
        cancelRestart();
        stopRunning();
    });
}

void DriverHost::permissionsChanged() {
    queue_->run([this] {
        restartAttempt_ = 0;
        if (!desired_) return;
        if (running_) stopRunning();
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

// A start takes the place of a restart that is pending.
void DriverHost::startIfNeeded() {
    if (running_ || deps_.isSuperseded()) return;
    cancelRestart();
    if (!setup_.executable) return log_("the desktop driver isn't in this build of the app");
    reapStale();
    const auto directory = DriverSocketDirectory::create(setup_.applicationSupport);
    if (!directory) return log_(describe(directory.error()));
    if (!launch(*setup_.executable, *directory)) return scheduleRestart();

    setEndpoint(CuaDriverEndpoint{.socketPath = directory->socketPath, .binaryPath = *setup_.executable});
    restartAttempt_ = 0;
    log_("desktop driver ready");
}

// Whether the driver runs and is ready. If not, its directory is gone again and the log knows why.
bool DriverHost::launch(const std::string& executable, const DriverSocketDirectory& directory) {
    if (const auto error = spawn(executable, directory)) {
        directory.cleanup();
        log_("the desktop driver didn't start: " + describe(*error));
        return false;
    }
    if (!directory.writeProcessIdentifier(running_->child->pid())) {
        log_("couldn't record the desktop driver's pid");
        stopRunning();
        return false;
    }
    switch (awaitReadiness()) {
        case Readiness::ready: return true;
        case Readiness::exited: {
            const auto status = running_->child->exitStatus();
            forgetRunning();
            log_("the desktop driver stopped before it was ready (" + describe(*status) + ")");
            return false;
        }
        case Readiness::timedOut: log_("the desktop driver didn't become ready in time"); break;
        case Readiness::superseded: break;
    }
    stopRunning();
    return false;
}

std::optional<SystemError> DriverHost::spawn(const std::string& executable,
                                             const DriverSocketDirectory& directory) {
    auto liveness = Spawner::pipe();
    if (!liveness) return liveness.error();
    const auto recipe = DriverLaunch::make({.executable = executable,
                                            .socketPath = directory.socketPath,
                                            .hostBundleID = setup_.hostBundleID,
                                            .hostPID = ::getpid(),
                                            .inherited = setup_.inherited});
    const Generation generation = ++generation_;
    auto child = deps_.launch(recipe, liveness->readEnd.get(),
                              [this, weak = std::weak_ptr(queue_), generation](ExitStatus status) {
                                  const auto queue = weak.lock();
                                  if (!queue) return;
                                  queue->post([this, generation, status] { exited(generation, status); });
                              });
    if (!child) return child.error();
    running_ = Running{generation, std::move(*child), directory, std::move(liveness->writeEnd)};
    return std::nullopt;
}

// Blocks the queue, so `running_` stays the same. A newer call, which waits for the queue, ends the wait.
DriverHost::Readiness DriverHost::awaitReadiness() const {
    const TimePoint deadline = after(deps_.now(), deps_.readinessTimeout);
    while (true) {
        if (!running_->child->isRunning()) return Readiness::exited;
        if (deps_.isSuperseded()) return Readiness::superseded;
        if (deps_.socketReady(running_->directory.socketPath)) return Readiness::ready;
        deps_.sleep(lookInterval);
        if (deps_.now() > deadline) return Readiness::timedOut;
    }
}

void DriverHost::exited(Generation generation, ExitStatus status) {
    if (!running_ || running_->generation != generation) return;  // its end was dealt with already
    setEndpoint(std::nullopt);
    forgetRunning();
    log_("the desktop driver stopped unexpectedly (" + describe(status) + ")");
    scheduleRestart();
}

// The report of the exit comes when the driver is no longer the running one, and is ignored.
void DriverHost::stopRunning() {
    setEndpoint(std::nullopt);
    if (!running_) return reapStale();
    running_->child->stop(StopSequences::driver, std::move(running_->livenessWrite));
    forgetRunning();
}

void DriverHost::forgetRunning() {
    const auto ended = std::exchange(running_, std::nullopt);
    ended->directory.cleanup();
}

void DriverHost::reapStale() const {
    DriverSocketDirectory::reapStale(setup_.applicationSupport, setup_.executable.value_or(""),
                                     DriverSocketDirectory::Processes::production());
}

// The driver is wanted, nothing runs and no restart is pending: the last start took the pending one's place.
void DriverHost::scheduleRestart() {
    if (deps_.isSuperseded() || restartAttempt_ >= deps_.restartDelays.size()) return;
    const Seconds delay = deps_.restartDelays[restartAttempt_++];
    pendingRestart_ = queue_->postAfter(delay, [this] {
        pendingRestart_.reset();
        startIfNeeded();
    });
}

void DriverHost::cancelRestart() {
    if (pendingRestart_) queue_->cancel(*pendingRestart_);
    pendingRestart_.reset();
}

void DriverHost::setEndpoint(const std::optional<CuaDriverEndpoint>& endpoint) {
    if (endpoint == endpoint_) return;
    endpoint_ = endpoint;
    onEndpointChange_(endpoint);
}

}  // namespace tarnik

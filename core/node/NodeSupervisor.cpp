#include "core/node/NodeSupervisor.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <variant>

#include "core/node/NodeLaunch.h"
#include "core/process/Spawner.h"

namespace tarnik {

using namespace NodeStates;

NodeSupervisor::NodeSupervisor(NodeHome home, Environment inherited, NodeSupervisorDeps deps,
                               std::function<void(const std::string&)> log,
                               std::function<void(const NodeState&)> onState)
    : home_(std::move(home)),
      inherited_(std::move(inherited)),
      deps_(std::move(deps)),
      log_(std::move(log)),
      onState_(std::move(onState)),
      queue_(deps_.makeQueue("tarnik.node-supervisor")) {}

NodeSupervisor::~NodeSupervisor() {
    stop();
    queue_->close();
}

void NodeSupervisor::start() {
    queue_->run([this] {
        backoff_.reset();
        startIfNeeded();
    });
}

void NodeSupervisor::stop() {
    queue_->run([this] {
        cancelRestart();
        stopCurrent();
        setState(Stopped{});
    });
}

void NodeSupervisor::setEndpoint(std::optional<CuaDriverEndpoint> endpoint) {
    queue_->run([this, &endpoint] {
        if (endpoint == endpoint_) return;
        endpoint_ = std::move(endpoint);
        restartForNewEnvironment();
    });
}

std::expected<std::shared_ptr<PairingSession>, PairingError> NodeSupervisor::beginPairing(
    const std::string& joinURL, OnPairingUpdate onUpdate) {
    std::expected<std::shared_ptr<PairingSession>, PairingError> result;
    queue_->run([&] { result = startPairing(joinURL, std::move(onUpdate)); });
    return result;
}

NodeState NodeSupervisor::currentState() const {
    NodeState state;
    queue_->run([&] { state = state_; });
    return state;
}

std::optional<CuaDriverEndpoint> NodeSupervisor::currentEndpoint() const {
    std::optional<CuaDriverEndpoint> endpoint;
    queue_->run([&] { endpoint = endpoint_; });
    return endpoint;
}

std::optional<pid_t> NodeSupervisor::runningPID() const {
    std::optional<pid_t> pid;
    queue_->run([&] {
        if (const auto* run = std::get_if<Run>(&current_)) pid = run->child->pid();
    });
    return pid;
}

// A start takes the place of a pending restart, so at most one restart is ever pending.
void NodeSupervisor::startIfNeeded() {
    if (deps_.isEnding() || currentGeneration() != 0) return;
    cancelRestart();
    if (!home_.isInstalled()) return setState(NotInstalled{});
    if (!home_.hasJoined()) return setState(WaitingForLink{});
    if (const auto error = spawnNode()) {
        log_("couldn't start the node: " + describe(*error));
        return scheduleRestart(Seconds::zero());
    }
    setState(Running{});
}

std::optional<SystemError> NodeSupervisor::spawnNode() {
    auto input = Spawner::pipe();
    if (!input) return input.error();
    const NodeLog::Output output = deps_.nodeLog ? deps_.nodeLog->attach() : NodeLog::Output();
    const Stdio outputs = output.writeEnd ? Stdio::fd(output.writeEnd.get()) : Stdio::null();
    const SpawnRequest request{.executable = home_.nodeBinary(),
                               .arguments = NodeLaunch::runArguments(home_),
                               .environment = NodeLaunch::environment(inherited_, home_, endpoint_),
                               .standardInput = Stdio::fd(input->readEnd.get()),
                               .standardOutput = outputs,
                               .standardError = outputs};

    const Generation generation = ++generation_;
    const TimePoint started = deps_.now();
    auto child = deps_.spawn(request, [this, weak = std::weak_ptr(queue_), generation, started,
                                       reader = output.reader, grace = deps_.outputGrace](ExitStatus status) {
        // A process that the node left on its output would cost a thread and a descriptor until it ends.
        if (const auto open = reader.lock()) open->closeAfter(grace);
        const auto queue = weak.lock();
        if (!queue) return;
        queue->post([this, generation, status, started] {
            exited(generation, status, deps_.now() - started, RunKind::normal);
        });
    });
    if (!child) return child.error();
    current_ = Run{std::move(*child), std::move(input->writeEnd), generation};
    return std::nullopt;
}

// What ran is no longer current before any waiting, so its exit report will find it gone.
void NodeSupervisor::stopCurrent() {
    Current ending = std::exchange(current_, std::monostate{});
    restartWhenPairingSettles_ = false;
    if (auto* run = std::get_if<Run>(&ending)) {
        run->child->stop(StopSequences::node, std::move(run->input));
    } else if (auto* pairing = std::get_if<Pairing>(&ending)) {
        pairing->session->cancel();
    }
}

void NodeSupervisor::exited(Generation generation, ExitStatus status, Seconds ranFor, RunKind kind) {
    if (currentGeneration() != generation) return;  // a late word of an older child
    current_ = std::monostate{};
    restartWhenPairingSettles_ = false;
    log_("the node stopped (" + describe(status) + ")");
    // A pairing run that ended without joining leaves the node waiting for another link.
    if (kind == RunKind::pairing && !home_.hasJoined()) return setState(WaitingForLink{});
    scheduleRestart(ranFor);
}

// Nothing runs, and no restart is pending.
void NodeSupervisor::scheduleRestart(Seconds ranFor) {
    const Seconds delay = backoff_.next(ranFor);
    setState(Restarting{delay});
    pendingRestart_ = queue_->postAfter(delay, [this] {
        pendingRestart_.reset();
        startIfNeeded();
    });
}

void NodeSupervisor::cancelRestart() {
    if (pendingRestart_) queue_->cancel(*pendingRestart_);
    pendingRestart_.reset();
}

// what runs     with another endpoint
// nothing       it is there for the next start
// the node      stopped, the backoff reset, started again
// a pairing     when it may be interrupted: stopped, the node started; until then looked at again in a while
void NodeSupervisor::restartForNewEnvironment() {
    if (std::holds_alternative<Run>(current_)) {
        stopCurrent();
        backoff_.reset();
        startIfNeeded();
    } else if (std::holds_alternative<Pairing>(current_)) {
        restartWhenPairingSettles_ = true;
        restartIfPairingSettled();
    }
}

void NodeSupervisor::schedulePairingCheck() {
    const Seconds interval = std::clamp(deps_.pairingGrace * 0.25, Seconds(0.2), Seconds(15));
    if (pairingCheck_) queue_->cancel(*pairingCheck_);
    pairingCheck_ = queue_->postAfter(interval, [this] { restartIfPairingSettled(); });
}

void NodeSupervisor::restartIfPairingSettled() {
    if (!restartWhenPairingSettles_) return;
    const auto* pairing = std::get_if<Pairing>(&current_);
    if (pairing == nullptr) {
        restartWhenPairingSettles_ = false;
    } else if (pairing->session->mayBeInterrupted(deps_.now(), deps_.pairingGrace)) {
        stopCurrent();
        startIfNeeded();
    } else {
        schedulePairingCheck();
    }
}

std::expected<std::shared_ptr<PairingSession>, PairingError> NodeSupervisor::startPairing(
    const std::string& joinURL, OnPairingUpdate onUpdate) {
    const auto* pairing = std::get_if<Pairing>(&current_);
    if (!home_.isInstalled()) return std::unexpected(PairingFailure::notInstalled);
    if (pairing != nullptr && pairing->session->isInProgress()) return std::unexpected(PairingFailure::busy);
    cancelRestart();
    stopCurrent();
    if (deps_.isEnding()) return std::unexpected(SystemError{.call = "connect", .code = ECANCELED});
    const Generation generation = ++generation_;
    auto session = PairingSession::start(pairingSetup(joinURL, std::move(onUpdate), generation));
    if (!session) {
        scheduleRestart(Seconds::zero());  // the node that ran before must not stay away
        return std::unexpected(session.error());
    }
    current_ = Pairing{*session, generation};
    setState(NodeStates::Pairing{});
    return *session;
}

PairingSession::Setup NodeSupervisor::pairingSetup(const std::string& joinURL, OnPairingUpdate onUpdate,
                                                   Generation generation) {
    const std::weak_ptr weak = queue_;
    return {.request = {.executable = home_.nodeBinary(),
                        .arguments = NodeLaunch::connectArguments(home_, joinURL),
                        .environment = NodeLaunch::environment(inherited_, home_, endpoint_)},
            .spawnPty = deps_.spawnPty,
            .now = deps_.now,
            .joined = [home = home_] { return home.hasJoined(); },
            .connectedAfter = deps_.connectedAfter,
            .callAfter =
                [weak](Seconds delay, std::function<void()> task) {
                    if (const auto queue = weak.lock()) queue->postAfter(delay, std::move(task));
                },
            .onUpdate =
                [this, weak, generation,
                 onUpdate = std::move(onUpdate)](const PairingSession::Snapshot& snapshot) {
                    if (onUpdate) onUpdate(snapshot);
                    if (!std::holds_alternative<PairingPhases::Connected>(snapshot.phase)) return;
                    if (const auto queue = weak.lock())
                        queue->post([this, generation] { pairingConnected(generation); });
                },
            .onExit =
                [this, weak, generation](ExitStatus status) {
                    const auto queue = weak.lock();
                    if (!queue) return;
                    // A pairing run always counts as a short one.
                    queue->post([this, generation, status] {
                        exited(generation, status, Seconds::zero(), RunKind::pairing);
                    });
                }};
}

void NodeSupervisor::pairingConnected(Generation generation) {
    if (std::holds_alternative<Pairing>(current_) && currentGeneration() == generation) setState(Running{});
}

// Of what runs; 0, which no child has, when nothing does.
NodeSupervisor::Generation NodeSupervisor::currentGeneration() const {
    if (const auto* run = std::get_if<Run>(&current_)) return run->generation;
    if (const auto* pairing = std::get_if<Pairing>(&current_)) return pairing->generation;
    return 0;
}

void NodeSupervisor::setState(const NodeState& state) {
    if (state == state_) return;
    state_ = state;
    onState_(state);
}

}  // namespace tarnik

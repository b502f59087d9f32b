#include "core/node/NodeSupervisor.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "core/node/NodeLaunch.h"

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
      queue_(deps_.makeQueue("tarnik.node-supervisor")),
      restarter_(queue_, [this] { startIfNeeded(); }) {}

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
        restarter_.cancelRestart();
        stopCurrent();
        setState(Stopped{});
    });
}

bool NodeSupervisor::restart() {
    bool mayRestart = false;
    queue_->run([&] {
        const auto* pairing = std::get_if<Pairing>(&current_);
        mayRestart = pairing == nullptr || !(*pairing)->isInProgress();
        if (!mayRestart) return;
        stopCurrent();
        backoff_.reset();
        startIfNeeded();
    });
    return mayRestart;
}

void NodeSupervisor::setEndpoint(std::optional<CuaDriverEndpoint> endpoint) {
    queue_->run([this, &endpoint] {
        if (endpoint == endpoint_) return;
        endpoint_ = std::move(endpoint);
        restartForNewEnvironment();
    });
}

NodeSupervisor::PairingStart NodeSupervisor::beginPairing(const std::string& joinURL,
                                                          OnPairingUpdate onUpdate) {
    PairingStart result;
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
        if (const auto* node = std::get_if<Node>(&current_)) pid = node->child->pid();
    });
    return pid;
}

// A start replaces a pending restart.
void NodeSupervisor::startIfNeeded() {
    if (deps_.isEnding() || !std::holds_alternative<std::monostate>(current_)) return;
    restarter_.cancelRestart();
    if (!home_.isInstalled()) return setState(NotInstalled{});
    if (!home_.hasJoined()) return setState(WaitingForLink{});
    if (const auto error = spawnNode()) {
        log_("couldn't start the node: " + describe(*error));
        deps_.onEvent(ChildEvents::StartFailed{describe(*error)});
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

    auto child = deps_.spawn(request, [this, run = restarter_.beginRun(), started = deps_.now(),
                                       reader = output.reader, grace = deps_.outputGrace](ExitStatus status) {
        // Closes the read end, because a descendant may hold the output open forever.
        if (const auto open = reader.lock()) open->closeAfter(grace);
        run.post([this, status, started] { exited(status, deps_.now() - started, RunKind::normal); });
    });
    if (!child) {
        restarter_.endRun();
        return child.error();
    }
    const auto pid = (*child)->pid();
    current_ = Node{std::move(*child), std::move(input->writeEnd)};
    deps_.onEvent(ChildEvents::Started{pid});
    return std::nullopt;
}

void NodeSupervisor::stopCurrent() {
    Current ending = takeCurrent();
    const bool isRunning =
        !std::holds_alternative<std::monostate>(ending) && std::holds_alternative<Running>(state_);
    if (auto* node = std::get_if<Node>(&ending)) {
        node->child->stop(StopSequences::node, std::move(node->input));
    } else if (const auto* pairing = std::get_if<Pairing>(&ending)) {
        (*pairing)->cancel();
    }
    if (isRunning) deps_.onEvent(ChildEvents::Stopped{});
}

// Clears the current run and returns it. Later events of this run, such as its exit, are ignored.
NodeSupervisor::Current NodeSupervisor::takeCurrent() {
    restarter_.endRun();
    cancelPairingCheck();
    return std::exchange(current_, std::monostate{});
}

void NodeSupervisor::exited(ExitStatus status, Seconds ranFor, RunKind kind) {
    takeCurrent();
    log_("the node stopped (" + describe(status) + ")");
    if (std::holds_alternative<Running>(state_)) deps_.onEvent(ChildEvents::Ended{status});
    // A pairing that ended without joining leaves the node waiting for another link.
    if (kind == RunKind::pairing && !home_.hasJoined()) return setState(WaitingForLink{});
    scheduleRestart(ranFor);
}

void NodeSupervisor::scheduleRestart(Seconds ranFor) {
    const Seconds delay = backoff_.next(ranFor);
    setState(Restarting{delay});
    deps_.onEvent(ChildEvents::RestartPlanned{delay});
    restarter_.restartAfter(delay);
}

// Called after a change of the endpoint.
//
//   current_    effect
//   monostate   the next start uses the new endpoint
//   Node        the node is restarted, and the backoff is reset
//   Pairing     the node replaces the pairing once the pairing may be interrupted
void NodeSupervisor::restartForNewEnvironment() {
    if (std::holds_alternative<Node>(current_)) {
        stopCurrent();
        backoff_.reset();
        startIfNeeded();
    } else {
        restartWhenPairingSettles();
    }
}

void NodeSupervisor::restartWhenPairingSettles() {
    cancelPairingCheck();
    const auto* pairing = std::get_if<Pairing>(&current_);
    if (pairing == nullptr) return;
    if ((*pairing)->mayBeInterrupted(deps_.now(), deps_.pairingGrace)) {
        stopCurrent();
        return startIfNeeded();
    }
    const Seconds interval = std::clamp(deps_.pairingGrace * 0.25, Seconds(0.2), Seconds(15));
    pairingCheck_ = queue_->postAfter(interval, [this] { restartWhenPairingSettles(); });
}

void NodeSupervisor::cancelPairingCheck() {
    if (pairingCheck_) queue_->cancel(*pairingCheck_);
    pairingCheck_.reset();
}

NodeSupervisor::PairingStart NodeSupervisor::startPairing(const std::string& joinURL,
                                                          OnPairingUpdate onUpdate) {
    const auto* pairing = std::get_if<Pairing>(&current_);
    if (!home_.isInstalled()) return std::unexpected(PairingFailure::notInstalled);
    if (pairing != nullptr && (*pairing)->isInProgress()) return std::unexpected(PairingFailure::busy);
    restarter_.cancelRestart();
    stopCurrent();
    if (deps_.isEnding()) return std::unexpected(SystemError{.call = "connect", .code = ECANCELED});
    auto session = PairingSession::start(pairingSetup(joinURL, std::move(onUpdate)));
    if (!session) {
        // The node was stopped for this pairing, so the node is restarted as after a short run.
        restarter_.endRun();
        scheduleRestart(Seconds::zero());
        return std::unexpected(session.error());
    }
    current_ = *session;
    setState(NodeStates::Pairing{});
    return *session;
}

PairingSession::Setup NodeSupervisor::pairingSetup(const std::string& joinURL, OnPairingUpdate onUpdate) {
    const ChildRestarter::Run run = restarter_.beginRun();
    return {.request = {.executable = home_.nodeBinary(),
                        .arguments = NodeLaunch::connectArguments(home_, joinURL),
                        .environment = NodeLaunch::environment(inherited_, home_, endpoint_)},
            .spawnPty = deps_.spawnPty,
            .now = deps_.now,
            .joined = [home = home_] { return home.hasJoined(); },
            .connectedAfter = deps_.connectedAfter,
            // The queue runs the check for `connected`, because the queue has timers.
            .callAfter =
                [weak = std::weak_ptr(queue_)](Seconds delay, std::function<void()> task) {
                    if (const auto queue = weak.lock()) queue->postAfter(delay, std::move(task));
                },
            .onUpdate =
                [this, run, onUpdate = std::move(onUpdate)](const PairingSession::Snapshot& snapshot) {
                    if (onUpdate) onUpdate(snapshot);
                    if (std::holds_alternative<PairingPhases::Connected>(snapshot.phase))
                        run.post([this] { setState(Running{}); });
                },
            .onExit =
                [this, run](ExitStatus status) {
                    // A pairing always counts as a short run.
                    run.post([this, status] { exited(status, Seconds::zero(), RunKind::pairing); });
                }};
}

void NodeSupervisor::setState(const NodeState& state) {
    if (state == state_) return;
    state_ = state;
    onState_(state);
}

}  // namespace tarnik

#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeLog.h"
#include "core/node/NodeState.h"
#include "core/node/RestartBackoff.h"
#include "core/pairing/PairingSession.h"
#include "core/process/ChildEvent.h"
#include "core/process/ChildRestarter.h"
#include "core/process/Spawner.h"

namespace tarnik {

// The effects and the times of NodeSupervisor.
struct NodeSupervisorDeps {
    std::function<decltype(Spawner::spawn)> spawn;  // starts the node in its normal mode
    PairingSession::SpawnPty spawnPty;              // starts the connect command
    std::function<TimePoint()> now;
    Seconds pairingGrace = Seconds(90);    // from the confirmation until a pairing may be interrupted
    Seconds connectedAfter = Seconds(15);  // from the confirmation until a running command is connected
    Seconds outputGrace = Seconds(5);      // from the node's exit until its output is closed here
    std::shared_ptr<NodeLog> nodeLog;      // null sends the node's output to /dev/null
    std::function<bool()> isEnding = [] { return false; };  // if true, no child is started
    OnChildEvent onEvent = [](const ChildEvent&) {};        // not called for a pairing that doesn't connect
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    static NodeSupervisorDeps production();  // real children, the steady clock, no log
};

// Keeps the helper node running: starts it, restarts it after a growing delay when it exits, and restarts it
// when the desktop driver's endpoint changes. For a pairing it runs the connect command in place of the node.
//
// One per application. Call from any thread, but not from inside `onState`, `log` or a pairing update.
//
//   from                   event                                   to
//   any, without a child   start, home not installed               notInstalled
//   any, without a child   start, no join record                   waitingForLink
//   any, without a child   start, node spawned                     running
//   any, without a child   start, pipe or spawn failed             restarting(delay)
//   restarting             delay passed                            as for start
//   running                node exits                              restarting(delay)
//   any                    beginPairing                            pairing; restarting(delay) on failure
//   pairing                session connected                       running, without a runningPID
//   pairing, connected     command exits, no join record           waitingForLink
//   pairing, connected     command exits, join record              restarting(delay)
//   any                    stop                                    stopped
class NodeSupervisor {
public:
    using OnPairingUpdate = std::function<void(const PairingSession::Snapshot&)>;
    using PairingStart = std::expected<std::shared_ptr<PairingSession>, PairingError>;

    // Starts no child. `inherited` is the application's environment. `onState` is called for each change of
    // the state, `log` with lower-case one-line messages, both on the private queue.
    NodeSupervisor(NodeHome home, Environment inherited, NodeSupervisorDeps deps,
                   std::function<void(const std::string&)> log,
                   std::function<void(const NodeState&)> onState);

    ~NodeSupervisor();  // calls stop()
    NodeSupervisor(const NodeSupervisor&) = delete;
    NodeSupervisor& operator=(const NodeSupervisor&) = delete;

    // Starts the node if no child runs. Call it again after an install, which the supervisor doesn't notice.
    void start();
    // Stops the node, by force if need be. Blocks for up to 20 s. Never fails.
    void stop();
    // Restarts a running node, which blocks for up to 20 s. Delays the restart while a pairing runs.
    void setEndpoint(std::optional<CuaDriverEndpoint> endpoint);

    // Stops the node and starts a pairing. Blocks for up to 20 s. A PairingFailure changes nothing.
    PairingStart beginPairing(const std::string& joinURL, OnPairingUpdate onUpdate);

    NodeState currentState() const;
    std::optional<CuaDriverEndpoint> currentEndpoint() const;
    // Returns the node's process id, or std::nullopt while a pairing runs. It may be stale once returned.
    std::optional<pid_t> runningPID() const;

private:
    struct Node {
        std::shared_ptr<ChildProcess> child;
        UniqueFd input;  // the node quits when this closes
    };
    using Pairing = std::shared_ptr<PairingSession>;
    using Current = std::variant<std::monostate, Node, Pairing>;
    enum class RunKind { normal, pairing };

    void startIfNeeded();
    std::optional<SystemError> spawnNode();
    void stopCurrent();
    Current takeCurrent();
    void exited(ExitStatus status, Seconds ranFor, RunKind kind);
    void scheduleRestart(Seconds ranFor);
    void restartForNewEnvironment();
    void restartWhenPairingSettles();
    void cancelPairingCheck();
    PairingStart startPairing(const std::string& joinURL, OnPairingUpdate onUpdate);
    PairingSession::Setup pairingSetup(const std::string& joinURL, OnPairingUpdate onUpdate);
    void setState(const NodeState& state);

    const NodeHome home_;
    const Environment inherited_;
    const NodeSupervisorDeps deps_;
    const std::function<void(const std::string&)> log_;
    const std::function<void(const NodeState&)> onState_;
    const std::shared_ptr<SerialQueue> queue_;  // the fields below are touched on it only
    ChildRestarter restarter_;
    Current current_;
    std::optional<CuaDriverEndpoint> endpoint_;
    RestartBackoff backoff_;
    std::optional<SerialQueue::Timer> pairingCheck_;  // set while a restart waits for the pairing to settle
    NodeState state_ = NodeStates::Stopped{};
};

}  // namespace tarnik

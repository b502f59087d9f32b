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
    Seconds connectedAfter = Seconds(15);  // from the confirmation until a running command has connected
    Seconds outputGrace = Seconds(5);      // from the node's exit until the supervisor closes the read end
    std::shared_ptr<NodeLog> nodeLog;      // null sends the node's output to /dev/null
    std::function<bool()> isEnding = [] { return false; };  // if true, no child is started
    OnChildEvent onEvent = [](const ChildEvent&) {};  // until connected, a pairing only reports restarts
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;
    static NodeSupervisorDeps production();  // real children, the steady clock, no log
};

// Keeps the helper node running. Restarts the node after an exit, with growing delays, and after a change of
// the desktop driver's endpoint. During a pairing the connect command runs in place of the node.
//
// One per application. Call from any thread, but not from `onState`, `log`, onEvent or an OnPairingUpdate.
//
//   from                   event                                   to
//   any, without a child   start, home not installed               notInstalled
//   any, without a child   start, no join record                   waitingForLink
//   any, without a child   start, otherwise                        running; restarting(delay) on failure
//   restarting             delay passed                            as for start
//   running                node exits                              restarting(delay)
//   any but pairing        restart                                 as for start
//   any                    beginPairing, unless refused or ending  pairing; restarting(delay) on failure
//   pairing                session connected                       running, without a runningPID
//   pairing, running       connect command exits, no join record   waitingForLink
//   pairing, running       connect command exits, join record      restarting(delay)
//   any                    stop                                    stopped
class NodeSupervisor {
public:
    using OnPairingUpdate = std::function<void(const PairingSession::Snapshot&)>;
    using PairingStart = std::expected<std::shared_ptr<PairingSession>, PairingError>;

    // Starts no child. `inherited` is the application's environment. `onState` receives each new state. `log`
    // receives lower-case one-line messages. Both run on the private queue.
    NodeSupervisor(NodeHome home, Environment inherited, NodeSupervisorDeps deps,
                   std::function<void(const std::string&)> log,
                   std::function<void(const NodeState&)> onState);

    ~NodeSupervisor();  // calls stop()
    NodeSupervisor(const NodeSupervisor&) = delete;
    NodeSupervisor& operator=(const NodeSupervisor&) = delete;

    // Resets the delays, and starts the node if no child runs. Call start() again after an install.
    void start();
    // Stops the node or the pairing. Blocks for up to 20 s. Returns even if the child survives SIGKILL.
    void stop();
    // Restarts the node now, with fresh delays. Blocks for up to 20 s. Returns false during a pairing.
    bool restart();
    // Stores the endpoint and restarts a running node. Blocks for up to 20 s. During a pairing, restarts once
    // the session has ended or pairingGrace has passed since the confirmation.
    void setEndpoint(std::optional<CuaDriverEndpoint> endpoint);
    // Stops the current child and starts a pairing. Blocks for up to 20 s. A PairingFailure changes nothing.
    PairingStart beginPairing(const std::string& joinURL, OnPairingUpdate onUpdate);
    NodeState currentState() const;
    std::optional<CuaDriverEndpoint> currentEndpoint() const;
    // Returns std::nullopt if no node runs or a pairing runs. The id may be stale once returned.
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
    const std::shared_ptr<SerialQueue> queue_;  // the fields below are used on this queue only
    ChildRestarter restarter_;
    Current current_;
    std::optional<CuaDriverEndpoint> endpoint_;
    RestartBackoff backoff_;
    std::optional<SerialQueue::Timer> pairingCheck_;  // set while a restart waits for the pairing to settle
    NodeState state_ = NodeStates::Stopped{};
};

}  // namespace tarnik

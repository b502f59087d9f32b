#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/driver/CuaDriverEndpoint.h"
#include "core/node/NodeHome.h"
#include "core/node/NodeState.h"
#include "core/node/NodeSupervisorDeps.h"
#include "core/node/RestartBackoff.h"

namespace tarnik {

// Keeps the helper node running: starts it as a child, starts it again after a growing delay when it ends,
// runs it in its pairing mode for a link, and restarts it when the desktop driver's endpoint changes.
//
// One per application. Call from any thread, but not from inside `onState`, `log` or a pairing update.
//
//   from                   event                                   to
//   any, nothing running   start, home not installed               notInstalled
//   any, nothing running   start, no join record                   waitingForLink
//   any, nothing running   start, node spawned                     running
//   any, nothing running   start, pipe or spawn failed             restarting(delay)
//   restarting             delay passed                            as start
//   running                node exits                              restarting(delay)
//   any                    beginPairing                            pairing
//   pairing                session connected                       running (runningPID stays none)
//   pairing run            exits, no join record                   waitingForLink
//   pairing run            exits, join record                      restarting(delay)
//   any                    stop                                    stopped
class NodeSupervisor {
public:
    using OnPairingUpdate = std::function<void(const PairingSession::Snapshot&)>;

    // Starts nothing. `inherited` is the application's environment. `onState` hears of every change of the
    // state, `log` of lower-case one-line messages; both on the private queue.
    NodeSupervisor(NodeHome home, Environment inherited, NodeSupervisorDeps deps,
                   std::function<void(const std::string&)> log,
                   std::function<void(const NodeState&)> onState);

    // Stops what runs, as stop().
    ~NodeSupervisor();
    NodeSupervisor(const NodeSupervisor&) = delete;
    NodeSupervisor& operator=(const NodeSupervisor&) = delete;

    // The node is wanted. Start again after installing: nothing else retries then.
    void start();
    // Ends the node politely, then by force. Blocks for up to 20 s. Never fails.
    void stop();

    // Blocks for up to 20 s when the node has to be started anew.
    void setEndpoint(std::optional<CuaDriverEndpoint> endpoint);

    // Stops the node and runs its connect command instead; blocks for up to 20 s. Not installed or busy
    // leaves everything as it was. `onUpdate` runs on the session's threads.
    std::expected<std::shared_ptr<PairingSession>, PairingError> beginPairing(const std::string& joinURL,
                                                                              OnPairingUpdate onUpdate);

    NodeState currentState() const;
    std::optional<CuaDriverEndpoint> currentEndpoint() const;

    // The node's process id; none while pairing. May be stale once returned.
    std::optional<pid_t> runningPID() const;

private:
    using Generation = std::uint64_t;
    enum class RunKind { normal, pairing };

    struct Run {
        std::shared_ptr<ChildProcess> child;
        UniqueFd input;  // the node leaves when this closes
        Generation generation;
    };
    struct Pairing {
        std::shared_ptr<PairingSession> session;
        Generation generation;
    };
    using Current = std::variant<std::monostate, Run, Pairing>;

    void startIfNeeded();
    std::optional<SystemError> spawnNode();
    void stopCurrent();
    void exited(Generation generation, ExitStatus status, Seconds ranFor, RunKind kind);
    void scheduleRestart(Seconds ranFor);
    void cancelRestart();
    void restartForNewEnvironment();
    void schedulePairingCheck();
    void restartIfPairingSettled();
    std::expected<std::shared_ptr<PairingSession>, PairingError> startPairing(const std::string& joinURL,
                                                                              OnPairingUpdate onUpdate);
    PairingSession::Setup pairingSetup(const std::string& joinURL, OnPairingUpdate onUpdate,
                                       Generation generation);
    void pairingConnected(Generation generation);
    Generation currentGeneration() const;
    void setState(const NodeState& state);

    const NodeHome home_;
    const Environment inherited_;
    const NodeSupervisorDeps deps_;
    const std::function<void(const std::string&)> log_;
    const std::function<void(const NodeState&)> onState_;
    const std::shared_ptr<SerialQueue> queue_;  // everything below is touched only on it

    Current current_;
    std::optional<CuaDriverEndpoint> endpoint_;
    RestartBackoff backoff_;
    Generation generation_ = 0;
    std::optional<SerialQueue::Timer> pendingRestart_;  // std::nullopt while a child runs, or after stop()
    bool restartWhenPairingSettles_ = false;
    std::optional<SerialQueue::Timer> pairingCheck_;
    NodeState state_ = NodeStates::Stopped{};
};

}  // namespace tarnik

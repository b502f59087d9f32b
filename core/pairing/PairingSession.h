#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

#include "core/foundation/ConditionWait.h"
#include "core/pairing/PairingReporter.h"
#include "core/pairing/TerminalBuffer.h"
#include "core/process/FDReader.h"
#include "core/process/PtyProcess.h"

namespace tarnik {

// The reason why a pairing is refused. A refusal changes nothing.
enum class PairingFailure { notInstalled, busy };

// The reason why a pairing did not start: a refusal, or the failed start of its command.
using PairingError = std::variant<PairingFailure, SystemError>;

std::string describe(PairingFailure failure);  // the message for the user
std::string describe(const PairingError& error);

// One attempt to join this machine to an account. Runs the helper's connect command on a terminal, waits for
// the command's prompt and for the user's confirmation, and types Enter. The outcome depends on how long the
// command runs after that.
//
// One per link. Shared by the supervisor, LinkPairing and the command's exit callback. The exit callback
// keeps the session alive until the end is reported. Call from any thread.
//
//   from              event                                              to
//   starting          the output contains promptMarker                   waitingForYes
//   waitingForYes     confirm()                                          connecting
//   connecting        the command still runs connectedAfter later        connected
//   connecting        the command ends after cancel(), joined() is true  connected
//   any in progress   the command ends otherwise                         ended(status)
//
// The command has ended when it has exited and its output has ended. The session waits at most drainTimeout
// for the output, and then closes the terminal, because a descendant could hold the terminal open forever.
class PairingSession : public std::enable_shared_from_this<PairingSession> {
    struct Passkey {};

public:
    static constexpr std::string_view promptMarker = "Press Enter to connect it";
    static constexpr Seconds drainTimeout = Seconds(1);

    using Phase = PairingPhase;
    using Failure = PairingFailure;
    using Snapshot = PairingSnapshot;
    using SpawnPty = std::function<decltype(PtyProcess::spawn)>;

    // The command, the effects and the times of a session.
    struct Setup {
        SpawnRequest request;
        SpawnPty spawnPty;
        std::function<TimePoint()> now;
        std::function<bool()> joined;  // called with the session's lock held
        Seconds connectedAfter;
        std::function<void(Seconds, std::function<void()>)> callAfter;  // runs a task later, on any thread
        std::function<void(const Snapshot&)> onUpdate;                  // may call this session
        ChildProcess::OnExit onExit;  // called once, right after the update that shows the end
        ConditionWait wait = steadyWait;
    };

    // Starts the command. A failed start calls no callback.
    static std::expected<std::shared_ptr<PairingSession>, SystemError> start(Setup setup);
    PairingSession(Passkey, Setup setup);

    Snapshot snapshot() const;
    Phase phase() const;
    bool isInProgress() const;

    // Types Enter if the phase is waitingForYes. Returns true if Enter was written.
    bool confirm();

    // Stops the command. Blocks for up to 8 s. On return the phase is final, unless the command survives
    // SIGKILL.
    void cancel();

    // Returns true if the phase is ended, or if `grace` has passed since the confirmation.
    bool mayBeInterrupted(TimePoint now, Seconds grace) const;

private:
    // The known facts about the end of the command.
    struct End {
        bool cancelled = false;
        std::optional<ExitStatus> exit;
        bool outputEnded = false;
        bool decided = false;  // the final phase is set
    };

    void attach(std::shared_ptr<PtyProcess> pty, std::shared_ptr<FDReader> reader);
    void received(std::string_view bytes);
    void commandExited(ExitStatus status);
    void outputEnded();
    void endIfComplete();
    void checkConnected();
    bool waitFor(Seconds timeout, const std::function<bool()>& done);
    Snapshot makeSnapshot(const Phase& phase) const TARNIK_REQUIRES(mutex_);
    void setPhase(const Phase& phase, std::optional<ExitStatus> exit = std::nullopt) TARNIK_REQUIRES(mutex_);

    const Setup setup_;
    const std::string id_;
    PairingReporter reporter_;

    mutable Mutex mutex_;  // locked before the mutexes of the child and the reporter, never after them
    Condition changed_;    // notified when the exit, the output's end or the decision is recorded
    std::shared_ptr<PtyProcess> pty_ TARNIK_GUARDED_BY(mutex_);   // null until attach()
    std::shared_ptr<FDReader> reader_ TARNIK_GUARDED_BY(mutex_);  // null until attach()
    TerminalBuffer output_ TARNIK_GUARDED_BY(mutex_);
    Phase phase_ TARNIK_GUARDED_BY(mutex_) = PairingPhases::Starting{};
    std::optional<TimePoint> confirmedAt_ TARNIK_GUARDED_BY(mutex_);
    End end_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik

#pragma once

#include <condition_variable>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "core/foundation/ConditionWait.h"
#include "core/foundation/Time.h"
#include "core/pairing/PairingFailure.h"
#include "core/pairing/PairingSnapshot.h"
#include "core/pairing/TerminalBuffer.h"
#include "core/process/PtyProcess.h"

namespace tarnik {

// One attempt to join this Mac to an account: runs the helper's connect command on a terminal, waits for its
// prompt and the person's yes, presses Enter for them and concludes from what the command does whether it
// worked.
//
// Made per link, never restarted. Shared by the supervisor, the application model and the command's exit
// callback, which keeps it until the end was reported. Call from any thread.
//
//   from            event                                             to
//   starting        the cleaned output holds promptMarker             waitingForYes
//   waitingForYes   confirm()                                         connecting
//   connecting      the command still runs connectedAfter later       connected
//   connecting      the command ends after cancel(), joined() is true connected
//   any but the last two   the command ends                           ended(status)
//   connected, ended       anything                                   as it was
//
// The command counts as ended when its output has ended too, or drainTimeout after its exit: its last words
// may still be on their way, and a descendant can hold the terminal open for ever.
class PairingSession : public std::enable_shared_from_this<PairingSession> {
    struct Passkey {};

public:
    static constexpr std::string_view promptMarker = "Press Enter to connect it";
    static constexpr Seconds drainTimeout = Seconds(1);

    using Phase = PairingPhase;
    using Failure = PairingFailure;
    using Snapshot = PairingSnapshot;

    using SpawnPty = std::function<std::expected<std::shared_ptr<PtyProcess>, SystemError>(
        const SpawnRequest&, ChildProcess::OnExit)>;

    // What a session is made of, and all that it asks of the outside.
    struct Setup {
        SpawnRequest request;
        SpawnPty spawnPty;
        std::function<TimePoint()> now;
        std::function<bool()> joined;  // called under the session's lock
        Seconds connectedAfter;
        std::function<void(Seconds, std::function<void()>)> callAfter;  // runs a task later, on any thread
        // Called for every change, in order, one call at a time, on the thread that made the change or on one
        // that is reporting an earlier one. Of several changes within one phase that wait, the last is
        // reported. May call back into the session.
        std::function<void(const Snapshot&)> onUpdate;
        ChildProcess::OnExit onExit;  // called once, right after the update that shows the end
        ConditionWait wait = steadyWait;
    };

    // Where it fails there is no session, and nothing is ever reported.
    static std::expected<std::shared_ptr<PairingSession>, SystemError> start(Setup setup);
    PairingSession(Passkey, Setup setup);

    Snapshot snapshot() const;
    Phase phase() const;
    bool isInProgress() const;

    // Presses Enter if the prompt is there and unanswered. Returns true if the Enter was written.
    bool confirm();

    // Ends the command: SIGTERM, 3 s, SIGKILL. Blocks for up to 8 s. The phase follows from the exit, and is
    // final on return unless the command outlived its SIGKILL.
    void cancel();

    // Returns true if the supervisor may stop this session for other work: not before the person's answer,
    // and not until `grace` after it.
    bool mayBeInterrupted(TimePoint now, Seconds grace) const;

private:
    void attach(std::shared_ptr<PtyProcess> pty);
    void received(std::string_view bytes);
    void commandExited(ExitStatus status);
    void outputEnded();
    void endIfComplete();
    void checkConnected();
    bool waitFor(Seconds timeout, const std::function<bool()>& done);
    Snapshot makeSnapshot(const Phase& phase) const;
    void setPhase(const Phase& phase);
    void reportChanges();

    const Setup setup_;
    const std::string id_;

    mutable std::mutex mutex_;         // guards what follows; taken before the child's own lock, never after
    std::condition_variable changed_;  // exited, output ended, ended
    std::shared_ptr<PtyProcess> pty_;  // empty until start() has succeeded
    TerminalBuffer output_;
    Phase phase_ = PairingPhases::Starting{};
    std::optional<TimePoint> confirmedAt_;
    bool stopRequested_ = false;
    std::optional<ExitStatus> exit_;
    bool outputEnded_ = false;
    bool ended_ = false;  // exit_ has decided about the phase

    std::deque<Phase> unreported_;  // the last is phase_; empty if every change was reported
    std::optional<ExitStatus> unreportedExit_;
    bool reporting_ = false;
};

}  // namespace tarnik

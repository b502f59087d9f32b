#pragma once

#include <condition_variable>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "core/foundation/Time.h"
#include "core/pairing/PairingFailure.h"
#include "core/pairing/PairingPhase.h"
#include "core/process/FDReader.h"
#include "core/process/PtyProcess.h"

namespace tarnik {

// One attempt to join this Mac to an account: runs the helper's connect command on a terminal, waits for its
// prompt and the person's yes, presses Enter for them and tells from what the command does whether it worked.
//
// Made per link, never restarted. Shared by the supervisor, whoever shows it, and the command's exit
// callback, which keeps it until the end was told. Call from any thread.
//
//   from            event                                             to
//   starting        the cleaned output holds promptMarker             waitingForYes
//   waitingForYes   confirm()                                         connecting
//   connecting      the command still runs connectedAfter later       connected
//   connecting      the command ends after cancel(), joined() is true connected
//   any but the last two   the command ends                           ended(status)
//   connected, ended       anything                                   as it was
class PairingSession : public std::enable_shared_from_this<PairingSession> {
    struct Passkey {};

public:
    static constexpr std::string_view promptMarker = "Press Enter to connect it";
    static constexpr std::size_t maxTextBytes = 16384;
    static constexpr std::size_t keptCharacters = 8192;  // user-perceived ones, once there were more bytes
    static constexpr Seconds cancelGrace = Seconds(3);
    static constexpr Seconds drainTimeout = Seconds(1);  // for output that is still on its way at the exit

    using Phase = PairingPhase;
    using Failure = PairingFailure;

    struct Snapshot {
        std::string sessionID;
        Phase phase;
        std::string text;  // cleaned of escape sequences; from outside, so shown as plain text only

        bool operator==(const Snapshot&) const = default;
    };

    using SpawnPty = std::function<std::expected<std::shared_ptr<PtyProcess>, SpawnError>(
        const SpawnRequest&, ChildProcess::OnExit)>;

    // What a session is made of, and all that it asks of the outside.
    struct Setup {
        SpawnRequest request;
        SpawnPty spawnPty;
        std::function<TimePoint()> now;
        std::function<bool()> joined;  // asked under the session's lock
        Seconds connectedAfter;
        std::function<void(Seconds, std::function<void()>)> callAfter;  // runs a task later, on any thread
        // Told of every change, in order, one call at a time, on the thread that made the change or on one
        // that is telling of an earlier one. May call back into the session.
        std::function<void(const Snapshot&)> onUpdate;
        ChildProcess::OnExit onExit;  // told like a change, right after the snapshot that shows the end
    };

    static std::expected<std::shared_ptr<PairingSession>, SpawnError> start(Setup setup);
    PairingSession(Passkey, Setup setup);

    Snapshot snapshot() const;
    Phase phase() const;
    bool isInProgress() const;

    // Presses Enter, if the prompt is there and unanswered; whether the Enter was written.
    bool confirm();

    // Ends the command: SIGTERM, 3 s, SIGKILL, 5 s, and 2 s for its last words. Blocks that long at most. The
    // phase follows from the exit, and is final on return if the command has ended.
    void cancel();

    // Whether the supervisor may stop this session for other work: not before the person's answer, and not
    // until `grace` after it.
    bool mayBeInterrupted(TimePoint now, Seconds grace) const;

private:
    struct Update {
        Snapshot snapshot;
        std::optional<ExitStatus> ended;  // of the command, to be told after the snapshot
    };

    void attach(std::shared_ptr<PtyProcess> pty, std::shared_ptr<FDReader> reader);
    void received(std::string_view bytes);
    void commandEnded(ExitStatus status);
    void processExited(ExitStatus status);
    void checkConnected();
    Snapshot makeSnapshot() const;
    void enqueueUpdate(std::optional<ExitStatus> ended = {});
    void deliverUpdates();

    const Setup setup_;
    const std::string id_;

    mutable std::mutex mutex_;         // guards what follows; taken before the child's own lock, never after
    std::condition_variable changed_;  // attached, ended
    std::shared_ptr<PtyProcess> pty_;
    std::shared_ptr<FDReader> reader_;
    std::string raw_;  // decoded, not cleaned
    Phase phase_ = PairingPhases::Starting{};
    std::optional<TimePoint> confirmedAt_;
    bool stopRequested_ = false;
    std::deque<Update> updates_;  // changes not yet told
    bool delivering_ = false;
};

}  // namespace tarnik

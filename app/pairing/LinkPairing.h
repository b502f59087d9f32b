#pragma once

#include <atomic>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "app/pairing/LinkMessage.h"
#include "app/platform/BackgroundTasks.h"
#include "app/platform/MainThread.h"
#include "core/foundation/CallbackGuard.h"
#include "core/foundation/CoalescingQueue.h"
#include "core/pairing/JoinLink.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {

// Pairs this machine with an account through a link. Checks the link with the service, then follows the
// session that connects the machine. Accepts one link at a time. Owned by AppModel. Main thread only. Starts
// and cancels sessions on AppModel's queue for calls to the supervisor.
//
//   slot       event                                           to
//   empty      a link is accepted                              starting
//   starting   first snapshot of its session                   active
//   starting   the link is refused, or no session can start    empty
//   active     snapshot whose phase is connected or ended      empty; the snapshot is still shown
//   any        cancel, stop                                    empty
class LinkPairing {
public:
    using Session = std::shared_ptr<PairingSession>;
    using OnSnapshot = std::function<void(const PairingSession::Snapshot&)>;

    // The part of the application's state that a link changes.
    struct State {
        // The current attempt's latest snapshot, or the previous attempt's final one.
        std::optional<PairingSession::Snapshot> pairing;
        std::optional<LinkMessage> message;
        std::optional<JoinCode> offer;  // a link that waits for the user, because this machine has joined
        bool checking = false;          // a link was accepted; its session has no snapshot yet
    };

    // yes: the link's account replaces the current account. no: the link becomes an offer.
    enum class Replacing { no, yes };

    // The effects of LinkPairing.
    struct Deps {
        Url webOrigin;
        LinkPermission permission = {};
        std::function<bool()> isInstalled;  // true if the helper is installed and its supervisor exists
        std::function<bool()> hasJoined;
        // Returns the service's answer at this address. Blocks. Called on a detached thread.
        std::function<std::expected<std::string, HttpError>(const std::string& url)> fetchAnswer;

        std::function<bool(const std::string& label, BackgroundTasks::Task task)> detach;  // see AppPlatform

        // Starts a session. Blocks. Called on the queue.
        std::function<std::expected<Session, PairingError>(const std::string& joinURL, OnSnapshot)> begin;

        std::function<void(MainThread::Task)> post;  // posts a task to the main thread
        std::function<void(const State&)> onChange;
    };

    // `queue` outlives this object. The owner closes `queue` before it destroys this object.
    LinkPairing(Deps deps, CoalescingQueue& queue);
    ~LinkPairing() = default;
    LinkPairing(const LinkPairing&) = delete;
    LinkPairing& operator=(const LinkPairing&) = delete;

    void connect(const std::string& link);  // typed or pasted
    void connect(const JoinCode& code, Replacing replacing);
    void declineOffer();
    void confirm();
    void cancel();
    void dismissOutcome();  // ignored while a link is in progress
    void dismissMessage();  // shows the progress line again while a link is being checked
    bool isInProgress() const;

    // Ignores all later links and clears the state. Returns the session that the caller cancels, or nullptr.
    Session stop();

private:
    using Attempt = std::uint64_t;  // identifies a link; late answers to earlier attempts are ignored

    struct Starting {
        Attempt attempt;
        bool operator==(const Starting&) const = default;
    };
    struct Active {
        Attempt attempt;
        std::string sessionID;
        bool operator==(const Active&) const = default;
    };
    using Slot = std::variant<std::monostate, Starting, Active>;

    void change(const std::function<void(State&)>& edit);
    void refuse(std::string_view why, std::optional<FailureCause> cause = {});
    void check(const JoinCode& code);
    void checked(Attempt attempt, const CheckedLink& joinURL);
    void begin(Attempt attempt, const std::string& joinURL);
    void began(Attempt attempt, const std::expected<Session, PairingError>& session);
    void update(Attempt attempt, const PairingSession::Snapshot& snapshot);
    bool adopt(Attempt attempt, const PairingSession::Snapshot& snapshot);
    Session freeSlot();

    const Deps deps_;
    CoalescingQueue& queue_;
    State state_;
    Slot slot_;
    Attempt lastAttempt_ = 0;
    std::atomic<Attempt> wanted_ = 0;  // the attempt in the slot, or 0; also read on the queue
    Session session_;                  // the session of the slot; null before the session has begun
    bool stopped_ = false;
    const CallbackGuard guard_;
};

}  // namespace tarnik

#include "app/pairing/LinkPairing.h"

#include <utility>

#include "app/pairing/LatestSnapshots.h"
#include "app/texts/FailureTexts.h"
#include "app/texts/LinkTexts.h"

namespace tarnik {

namespace {

CheckedLink joinURLIn(const std::expected<std::string, HttpError>& answer, const std::string& code) {
    if (!answer) return std::unexpected(causeOf(answer.error()));
    if (auto joinURL = JoinLink::joinURL(*answer, code)) return *std::move(joinURL);
    return std::unexpected(causeOfAnswer(*answer));
}

bool shows(const LinkPairing::State& state, std::string_view message) {
    return state.message && state.message->text == message;
}

}  // namespace

LinkPairing::LinkPairing(Deps deps, CoalescingQueue& queue) : deps_(std::move(deps)), queue_(queue) {}

bool LinkPairing::isInProgress() const {
    return !std::holds_alternative<std::monostate>(slot_);
}

void LinkPairing::change(const std::function<void(State&)>& edit) {
    edit(state_);
    state_.checking = std::holds_alternative<Starting>(slot_);
    deps_.onChange(state_);
}

// A refusal also withdraws an offer, because the page of an offer shows no message.
void LinkPairing::refuse(std::string_view why, std::optional<FailureCause> cause) {
    change([&](State& next) {
        next.message = LinkMessage{.text = std::string(why), .cause = cause};
        next.offer.reset();
    });
}

void LinkPairing::connect(const std::string& link) {
    if (stopped_) return;
    if (!deps_.permission.pairing) return refuse(LinkTexts::pairingNotAllowed);
    const auto code = JoinLink::code(link, deps_.webOrigin);
    if (!code) return refuse(LinkTexts::notALink);
    connect(*code, Replacing::no);
}

void LinkPairing::connect(const JoinCode& code, Replacing replacing) {
    if (stopped_) return;
    if (!deps_.permission.pairing) return refuse(LinkTexts::pairingNotAllowed);
    const bool hasJoined = deps_.hasJoined();
    if (hasJoined && !deps_.permission.replacing) return refuse(LinkTexts::replacingNotAllowed);
    if (!deps_.isInstalled()) return refuse(LinkTexts::stillInstalling);
    if (isInProgress()) return refuse(describe(PairingFailure::busy));
    if (hasJoined && replacing == Replacing::no) {
        return change([&](State& next) {
            next.offer = code;
            next.message.reset();
        });
    }
    check(code);
}

void LinkPairing::check(const JoinCode& code) {
    const auto attempt = ++lastAttempt_;
    slot_ = Starting{attempt};
    wanted_ = attempt;
    change([](State& next) {
        next.message = LinkMessage{std::string(LinkTexts::checkingLink)};
        next.offer.reset();
        next.pairing.reset();
    });
    const auto url = JoinLink::answerURL(code.text, deps_.webOrigin).text();
    const bool started = deps_.detach("tarnik.link", [this, fetch = deps_.fetchAnswer, url, code = code.text,
                                                      attempt, post = guard_.wrapPost(deps_.post)] {
        post([this, attempt, joinURL = joinURLIn(fetch(url), code)] { checked(attempt, joinURL); });
    });
    if (started) return;
    freeSlot();
    refuse(FailureTexts::tooBusy);
}

void LinkPairing::checked(Attempt attempt, const CheckedLink& joinURL) {
    if (slot_ != Slot(Starting{attempt})) return;  // cancelled meanwhile
    if (joinURL) return queue_.call([this, attempt, text = joinURL->text()] { begin(attempt, text); });
    freeSlot();
    refuse(LinkTexts::linkExpired, joinURL.error());
}

// Runs on the queue, because the supervisor blocks until the node has stopped.
void LinkPairing::begin(Attempt attempt, const std::string& joinURL) {
    if (wanted_ != attempt) return;  // cancelled while this task waited
    const auto post = guard_.wrapPost(deps_.post);
    const auto onSnapshot = [this, attempt, post, snapshots = std::make_shared<LatestSnapshots>()](
                                const PairingSession::Snapshot& snapshot) {
        if (!snapshots->put(snapshot)) return;
        post([this, attempt, snapshots] {
            for (const auto& latest : snapshots->take()) update(attempt, latest);
        });
    };
    const auto session = deps_.begin(joinURL, onSnapshot);
    post([this, attempt, session] { began(attempt, session); });
}

void LinkPairing::began(Attempt attempt, const std::expected<Session, PairingError>& session) {
    const bool isCurrent = isInProgress() && wanted_ == attempt;
    if (!session) {
        if (!isCurrent) return;
        freeSlot();
        return refuse(messageFor(session.error()));
    }
    if (isCurrent) {
        session_ = *session;
        // Shows the session and its Cancel button before the command prints anything.
        if (!state_.pairing) update(attempt, (*session)->snapshot());
    } else if ((*session)->isInProgress()) {  // cancelled while the session began
        queue_.call([late = *session] { late->cancel(); });
    }
}

void LinkPairing::update(Attempt attempt, const PairingSession::Snapshot& snapshot) {
    if (!adopt(attempt, snapshot)) return;
    const bool isOver = !tarnik::isInProgress(snapshot.phase);
    if (isOver) freeSlot();
    change([&](State& next) {
        next.pairing = snapshot;
        // A message about a different, refused link is kept until the pairing is over.
        if (isOver || shows(next, LinkTexts::checkingLink)) next.message.reset();
    });
}

// Makes the slot active at the first snapshot. Returns true if the snapshot belongs to the link in the slot.
bool LinkPairing::adopt(Attempt attempt, const PairingSession::Snapshot& snapshot) {
    const Active active{attempt, snapshot.sessionID};
    if (slot_ == Slot(Starting{attempt})) slot_ = active;
    return slot_ == Slot(active);
}

void LinkPairing::declineOffer() {
    change([](State& next) { next.offer.reset(); });
}

void LinkPairing::confirm() {
    if (!session_) return;
    queue_.call([session = session_] { session->confirm(); });
}

void LinkPairing::cancel() {
    const auto session = freeSlot();
    change([](State& next) {
        next.pairing.reset();
        next.message.reset();
    });
    if (session) queue_.call([session] { session->cancel(); });
}

void LinkPairing::dismissOutcome() {
    if (isInProgress()) return;
    change([](State& next) { next.pairing.reset(); });
}

void LinkPairing::dismissMessage() {
    change([&](State& next) {
        next.message.reset();
        if (std::holds_alternative<Starting>(slot_))
            next.message = LinkMessage{std::string(LinkTexts::checkingLink)};
    });
}

LinkPairing::Session LinkPairing::stop() {
    stopped_ = true;
    const auto session = freeSlot();
    change([](State& next) { next = State(); });
    return session;
}

// Empties the slot. Returns its session, or nullptr if the slot has no session yet.
LinkPairing::Session LinkPairing::freeSlot() {
    slot_ = std::monostate();
    wanted_ = 0;
    return std::exchange(session_, nullptr);
}

}  // namespace tarnik

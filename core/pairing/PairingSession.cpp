#include "core/pairing/PairingSession.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "core/foundation/Uuid.h"
#include "core/process/FDReader.h"

namespace tarnik {

using namespace PairingPhases;

std::expected<std::shared_ptr<PairingSession>, SystemError> PairingSession::start(Setup setup) {
    // The session is there before its command, so that an exit, however early, finds it. Until it is attached
    // it reports no end.
    auto session = std::make_shared<PairingSession>(Passkey{}, std::move(setup));
    auto pty = session->setup_.spawnPty(session->setup_.request,
                                        [session](ExitStatus status) { session->commandExited(status); });
    if (!pty) return std::unexpected(pty.error());

    const std::weak_ptr weak = session;
    const auto reader = FDReader::start((*pty)->takeMaster(),
                                        [weak](std::string_view bytes) {
                                            if (const auto alive = weak.lock()) alive->received(bytes);
                                        },
                                        [weak] {
                                            if (const auto alive = weak.lock()) alive->outputEnded();
                                        });
    if (!reader) {
        (*pty)->child().signal(SIGKILL);
        return std::unexpected(reader.error());
    }
    session->attach(*pty);
    return session;
}

PairingSession::PairingSession(Passkey, Setup setup) : setup_(std::move(setup)), id_(randomUuid()) {}

PairingSession::Snapshot PairingSession::snapshot() const {
    const std::lock_guard lock(mutex_);
    return makeSnapshot(phase_);
}

PairingPhase PairingSession::phase() const {
    const std::lock_guard lock(mutex_);
    return phase_;
}

bool PairingSession::isInProgress() const {
    return tarnik::isInProgress(phase());
}

bool PairingSession::confirm() {
    std::shared_ptr<PtyProcess> pty;
    {
        const std::lock_guard lock(mutex_);
        if (phase_ != Phase(WaitingForYes{})) return false;
        setPhase(Connecting{});
        confirmedAt_ = setup_.now();
        pty = pty_;
    }
    const bool written = pty->write("\n");
    reportChanges();
    setup_.callAfter(setup_.connectedAfter, [weak = weak_from_this()] {
        if (const auto session = weak.lock()) session->checkConnected();
    });
    return written;
}

void PairingSession::cancel() {
    std::shared_ptr<PtyProcess> pty;
    {
        const std::lock_guard lock(mutex_);
        stopRequested_ = true;
        pty = pty_;
    }
    const TimePoint deadline = after(setup_.now(), totalWait(StopSequences::connectCommand));
    pty->closeInput();
    const auto perform = [&pty](StopAction action) {
        pty->child().signal(action == StopAction::kill ? SIGKILL : SIGTERM);
        return true;
    };
    const auto hasEnded = [this](Seconds timeout) {
        return waitFor(timeout, [this] { return exit_.has_value(); });
    };
    if (!runStopSequence(StopSequences::connectCommand, perform, hasEnded)) return;
    // Until its end the session is in the way of the next.
    waitFor(std::min(drainTimeout, Seconds(deadline - setup_.now())), [this] { return ended_; });
    outputEnded();
}

bool PairingSession::mayBeInterrupted(TimePoint now, Seconds grace) const {
    const std::lock_guard lock(mutex_);
    if (std::holds_alternative<Ended>(phase_)) return true;
    return confirmedAt_ && now - *confirmedAt_ >= grace;
}

void PairingSession::attach(std::shared_ptr<PtyProcess> pty) {
    {
        const std::lock_guard lock(mutex_);
        pty_ = std::move(pty);
    }
    endIfComplete();
}

void PairingSession::received(std::string_view bytes) {
    {
        const std::lock_guard lock(mutex_);
        const std::size_t changed = output_.append(bytes);
        // The text before that was searched when it came, but may hold the marker's beginning.
        const std::size_t from = changed - std::min(changed, promptMarker.size());
        const bool prompts = output_.text().find(promptMarker, from) != std::string::npos;
        setPhase(prompts && phase_ == Phase(Starting{}) ? WaitingForYes{} : phase_);
    }
    reportChanges();
}

void PairingSession::commandExited(ExitStatus status) {
    {
        std::unique_lock lock(mutex_);
        exit_ = status;
        changed_.notify_all();
        setup_.wait(lock, changed_, drainTimeout, [this] { return outputEnded_; });
        outputEnded_ = true;
    }
    endIfComplete();
}

// Concludes nothing: the thread that reports the exit waits for this.
void PairingSession::outputEnded() {
    const std::lock_guard lock(mutex_);
    outputEnded_ = true;
    changed_.notify_all();
}

void PairingSession::endIfComplete() {
    {
        const std::lock_guard lock(mutex_);
        if (!pty_ || !exit_ || !outputEnded_ || ended_) return;
        ended_ = true;
        unreportedExit_ = exit_;
        const bool wasConnecting = phase_ == Phase(Connecting{});
        if (phase_ == Phase(Connected{}) || (wasConnecting && stopRequested_ && setup_.joined())) {
            setPhase(Connected{});
        } else {
            setPhase(Ended{*exit_});
        }
        changed_.notify_all();
    }
    reportChanges();
}

void PairingSession::checkConnected() {
    {
        const std::lock_guard lock(mutex_);
        if (phase_ != Phase(Connecting{}) || !pty_->child().isRunning()) return;
        setPhase(Connected{});
    }
    reportChanges();
}

bool PairingSession::waitFor(Seconds timeout, const std::function<bool()>& done) {
    std::unique_lock lock(mutex_);
    return setup_.wait(lock, changed_, timeout, done);
}

PairingSession::Snapshot PairingSession::makeSnapshot(const Phase& phase) const {
    return {.sessionID = id_, .phase = phase, .text = output_.text(), .textStart = output_.textStart()};
}

// Called with the lock held, for every change: also for one that leaves the phase as it is. A phase that
// waits to be reported is reported with the text of that moment, so nothing piles up behind a slow listener.
void PairingSession::setPhase(const Phase& phase) {
    phase_ = phase;
    if (unreported_.empty() || unreported_.back() != phase) unreported_.push_back(phase);
}

// Called without the lock. Changes come from four threads; they stay in order since only one of them reports.
void PairingSession::reportChanges() {
    std::unique_lock lock(mutex_);
    if (reporting_) return;
    reporting_ = true;
    while (!unreported_.empty()) {
        const Snapshot next = makeSnapshot(unreported_.front());
        unreported_.pop_front();
        std::optional<ExitStatus> exit;
        if (unreported_.empty()) exit = std::exchange(unreportedExit_, std::nullopt);
        lock.unlock();
        if (setup_.onUpdate) setup_.onUpdate(next);
        if (exit && setup_.onExit) setup_.onExit(*exit);
        lock.lock();
    }
    reporting_ = false;
}

}  // namespace tarnik

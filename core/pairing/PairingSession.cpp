#include "core/pairing/PairingSession.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "core/foundation/Uuid.h"

namespace tarnik {

using namespace PairingPhases;

std::expected<std::shared_ptr<PairingSession>, SystemError> PairingSession::start(Setup setup) {
    // The session exists before its command, so that even an immediate exit is recorded. The session reports
    // its end only after attach().
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
    session->attach(*pty, *reader);
    return session;
}

PairingSession::PairingSession(Passkey, Setup setup)
    : setup_(std::move(setup)),
      id_(randomUuid()),
      reporter_({.snapshot =
                     [this](const Phase& phase) {
                         const MutexLock lock(mutex_);
                         return makeSnapshot(phase);
                     },
                 .onUpdate = setup_.onUpdate,
                 .onExit = setup_.onExit}) {}

PairingSession::Snapshot PairingSession::snapshot() const {
    const MutexLock lock(mutex_);
    return makeSnapshot(phase_);
}

PairingPhase PairingSession::phase() const {
    const MutexLock lock(mutex_);
    return phase_;
}

bool PairingSession::isInProgress() const {
    return tarnik::isInProgress(phase());
}

bool PairingSession::confirm() {
    std::shared_ptr<PtyProcess> pty;
    {
        const MutexLock lock(mutex_);
        if (phase_ != Phase(WaitingForYes{})) return false;
        setPhase(Connecting{});
        confirmedAt_ = setup_.now();
        pty = pty_;
    }
    const bool written = pty->write("\n");
    reporter_.report();
    setup_.callAfter(setup_.connectedAfter, [weak = weak_from_this()] {
        if (const auto session = weak.lock()) session->checkConnected();
    });
    return written;
}

void PairingSession::cancel() {
    std::shared_ptr<PtyProcess> pty;
    {
        const MutexLock lock(mutex_);
        end_.cancelled = true;
        pty = pty_;
    }
    const TimePoint deadline = after(setup_.now(), totalWait(StopSequences::connectCommand));
    pty->closeInput();
    const auto perform = [&pty](StopAction action) {
        pty->child().signal(action == StopAction::kill ? SIGKILL : SIGTERM);
        return true;
    };
    const auto hasEnded = [this](Seconds timeout) {
        return waitFor(timeout, [this]() TARNIK_REQUIRES(mutex_) { return end_.exit.has_value(); });
    };
    if (!runStopSequence(StopSequences::connectCommand, perform, hasEnded)) return;
    // Waits for the decision, because the supervisor may start another session next. outputEnded() wakes the
    // thread in commandExited(), which then decides at once.
    const auto decided = [this]() TARNIK_REQUIRES(mutex_) { return end_.decided; };
    if (waitFor(std::min(drainTimeout, Seconds(deadline - setup_.now())), decided)) return;
    outputEnded();
    waitFor(drainTimeout, decided);
}

bool PairingSession::mayBeInterrupted(TimePoint now, Seconds grace) const {
    const MutexLock lock(mutex_);
    if (std::holds_alternative<Ended>(phase_)) return true;
    return confirmedAt_ && now - *confirmedAt_ >= grace;
}

void PairingSession::attach(std::shared_ptr<PtyProcess> pty, std::shared_ptr<FDReader> reader) {
    {
        const MutexLock lock(mutex_);
        pty_ = std::move(pty);
        reader_ = std::move(reader);
    }
    endIfComplete();
}

void PairingSession::received(std::string_view bytes) {
    {
        const MutexLock lock(mutex_);
        const std::size_t changed = output_.append(bytes);
        // The search starts in the earlier text, which may end with the beginning of the marker.
        const std::size_t from = changed - std::min(changed, promptMarker.size());
        const bool prompts = output_.text().find(promptMarker, from) != std::string::npos;
        setPhase(prompts && phase_ == Phase(Starting{}) ? WaitingForYes{} : phase_);
    }
    reporter_.report();
}

void PairingSession::commandExited(ExitStatus status) {
    {
        MutexLock lock(mutex_);
        end_.exit = status;
        changed_.notifyAll();
        setup_.wait(lock, changed_, drainTimeout,
                    [this]() TARNIK_REQUIRES(mutex_) { return end_.outputEnded; });
        end_.outputEnded = true;
    }
    endIfComplete();
}

// Wakes the thread in commandExited(), which decides the end of the session.
void PairingSession::outputEnded() {
    const MutexLock lock(mutex_);
    end_.outputEnded = true;
    changed_.notifyAll();
}

void PairingSession::endIfComplete() {
    std::shared_ptr<PtyProcess> pty;
    std::shared_ptr<FDReader> reader;
    {
        const MutexLock lock(mutex_);
        if (!pty_ || !end_.exit || !end_.outputEnded || end_.decided) return;
        pty = pty_;
        reader = reader_;
        end_.decided = true;
        const bool joined = phase_ == Phase(Connecting{}) && end_.cancelled && setup_.joined();
        const bool connected = joined || phase_ == Phase(Connected{});
        setPhase(connected ? Phase(Connected{}) : Ended{*end_.exit}, end_.exit);
        changed_.notifyAll();
    }
    // Closes both descriptors of the terminal, because a descendant may hold the terminal open forever.
    reader->closeAfter(Seconds::zero());
    pty->closeInput();
    reporter_.report();
}

void PairingSession::checkConnected() {
    {
        const MutexLock lock(mutex_);
        if (phase_ != Phase(Connecting{}) || !pty_->child().isRunning()) return;
        setPhase(Connected{});
    }
    reporter_.report();
}

bool PairingSession::waitFor(Seconds timeout, const std::function<bool()>& done) {
    MutexLock lock(mutex_);
    return setup_.wait(lock, changed_, timeout, done);
}

PairingSession::Snapshot PairingSession::makeSnapshot(const Phase& phase) const {
    return {.sessionID = id_,
            .phase = phase,
            .text = output_.text(),
            .textStart = output_.textStart(),
            .displayText = output_.displayText()};
}

// The only place that sets the phase. Called for every change of the session, even if the phase stays the
// same. The caller then releases the lock and calls PairingReporter::report().
void PairingSession::setPhase(const Phase& phase, std::optional<ExitStatus> exit) {
    phase_ = phase;
    reporter_.add(phase, exit);
}

}  // namespace tarnik

#include "core/pairing/PairingSession.h"

#include <csignal>
#include <utility>

#include "core/foundation/Utf8.h"
#include "core/foundation/Uuid.h"
#include "core/pairing/TerminalText.h"

namespace tarnik {

using namespace PairingPhases;

std::expected<std::shared_ptr<PairingSession>, SpawnError> PairingSession::start(Setup setup) {
    // The session is there before its command, so that an exit, however early, finds it.
    auto session = std::make_shared<PairingSession>(Passkey{}, std::move(setup));
    auto pty = session->setup_.spawnPty(session->setup_.request,
                                        [session](ExitStatus status) { session->commandEnded(status); });
    if (!pty) return std::unexpected(pty.error());

    auto reader =
        FDReader::start((*pty)->takeMaster(), [weak = std::weak_ptr(session)](std::string_view bytes) {
            if (const auto alive = weak.lock()) alive->received(bytes);
        });
    session->attach(*pty, reader.value_or(nullptr));
    if (reader) return session;
    (*pty)->child().signal(SIGKILL);
    return std::unexpected(reader.error());
}

PairingSession::PairingSession(Passkey, Setup setup) : setup_(std::move(setup)), id_(randomUuid()) {}

PairingSession::Snapshot PairingSession::snapshot() const {
    const std::lock_guard lock(mutex_);
    return makeSnapshot();
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
        phase_ = Connecting{};
        confirmedAt_ = setup_.now();
        enqueueUpdate();
        pty = pty_;
    }
    const bool written = pty->write("\n");
    deliverUpdates();
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
    pty->closeInput();
    pty->child().stop(cancelGrace);
    // The end becomes known only when the last words were drained, and until then the session is in the way
    // of the next.
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, after(steadyNow(), 2 * drainTimeout),
                        [this] { return !tarnik::isInProgress(phase_); });
}

bool PairingSession::mayBeInterrupted(TimePoint now, Seconds grace) const {
    const std::lock_guard lock(mutex_);
    if (std::holds_alternative<Ended>(phase_)) return true;
    return confirmedAt_ && now - *confirmedAt_ >= grace;
}

void PairingSession::attach(std::shared_ptr<PtyProcess> pty, std::shared_ptr<FDReader> reader) {
    const std::lock_guard lock(mutex_);
    pty_ = std::move(pty);
    reader_ = std::move(reader);
    changed_.notify_all();
}

void PairingSession::received(std::string_view bytes) {
    {
        const std::lock_guard lock(mutex_);
        raw_ += decodeLossy(bytes);
        // A test in bytes and a cut in characters: the window then always holds a screenful to read.
        if (raw_.size() > maxTextBytes) raw_ = std::string(lastCharacters(raw_, keptCharacters));
        if (std::holds_alternative<Starting>(phase_) && TerminalText::clean(raw_).contains(promptMarker)) {
            phase_ = WaitingForYes{};
        }
        enqueueUpdate();
    }
    deliverUpdates();
}

// What the command said last may still be on its way from the terminal, and is what tells the person why it
// failed. A descendant can hold the terminal open for ever, hence the bound.
void PairingSession::commandEnded(ExitStatus status) {
    std::shared_ptr<FDReader> reader;
    {
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, after(steadyNow(), drainTimeout), [this] { return pty_ != nullptr; });
        reader = reader_;
    }
    if (reader) reader->waitForEOF(drainTimeout);
    processExited(status);
}

void PairingSession::processExited(ExitStatus status) {
    {
        const std::lock_guard lock(mutex_);
        const bool wasConnecting = std::holds_alternative<Connecting>(phase_);
        if (wasConnecting && stopRequested_ && setup_.joined()) {
            phase_ = Connected{};
        } else if (!std::holds_alternative<Connected>(phase_)) {
            phase_ = Ended{status};
        }
        enqueueUpdate(status);
        changed_.notify_all();
    }
    deliverUpdates();
}

void PairingSession::checkConnected() {
    {
        const std::lock_guard lock(mutex_);
        if (!std::holds_alternative<Connecting>(phase_) || !pty_->child().isRunning()) return;
        phase_ = Connected{};
        enqueueUpdate();
    }
    deliverUpdates();
}

PairingSession::Snapshot PairingSession::makeSnapshot() const {
    return {id_, phase_, TerminalText::clean(raw_)};
}

// With the lock held. Of several untold changes within one phase only the last is worth telling, which bounds
// what a slow listener lets pile up.
void PairingSession::enqueueUpdate(std::optional<ExitStatus> ended) {
    const auto* untold = updates_.empty() ? nullptr : &updates_.back();
    if (untold && !untold->ended && untold->snapshot.phase == phase_) updates_.pop_back();
    updates_.push_back({makeSnapshot(), ended});
}

// Without the lock. Changes come from four threads; letting only one of them tell keeps them in order.
void PairingSession::deliverUpdates() {
    std::unique_lock lock(mutex_);
    if (delivering_) return;
    delivering_ = true;
    while (!updates_.empty()) {
        const Update next = std::move(updates_.front());
        updates_.pop_front();
        lock.unlock();
        if (setup_.onUpdate) setup_.onUpdate(next.snapshot);
        if (next.ended && setup_.onExit) setup_.onExit(*next.ended);
        lock.lock();
    }
    delivering_ = false;
}

}  // namespace tarnik

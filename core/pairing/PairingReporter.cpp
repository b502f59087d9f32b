#include "core/pairing/PairingReporter.h"

#include <utility>

namespace tarnik {

PairingReporter::PairingReporter(Operations operations) : operations_(std::move(operations)) {}

void PairingReporter::add(const PairingPhase& phase, std::optional<ExitStatus> exit) {
    const MutexLock lock(mutex_);
    if (changes_.empty() || changes_.back().phase != phase) {
        changes_.push_back({phase, exit});
    } else if (exit) {
        changes_.back().exit = exit;
    }
}

void PairingReporter::report() {
    MutexLock lock(mutex_);
    if (isReporting_) return;
    isReporting_ = true;
    while (!changes_.empty()) {
        const Change change = changes_.front();
        changes_.pop_front();
        lock.unlock();
        if (operations_.onUpdate) operations_.onUpdate(operations_.snapshot(change.phase));
        if (change.exit && operations_.onExit) operations_.onExit(*change.exit);
        lock.lock();
    }
    isReporting_ = false;
}

}  // namespace tarnik

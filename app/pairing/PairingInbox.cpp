#include "app/pairing/PairingInbox.h"

#include <utility>

namespace tarnik {

bool PairingInbox::put(const PairingSession::Snapshot& snapshot) {
    const std::lock_guard lock(mutex_);
    const bool wasEmpty = snapshots_.empty();
    if (!wasEmpty && snapshots_.back().phase == snapshot.phase) {
        snapshots_.back() = snapshot;
    } else {
        snapshots_.push_back(snapshot);
    }
    return wasEmpty;
}

std::vector<PairingSession::Snapshot> PairingInbox::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(snapshots_, {});
}

}  // namespace tarnik

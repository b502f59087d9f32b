#include "app/pairing/LatestSnapshots.h"

#include <utility>

namespace tarnik {

bool LatestSnapshots::put(const PairingSession::Snapshot& snapshot) {
    const MutexLock lock(mutex_);
    const bool wasEmpty = snapshots_.empty();
    if (!wasEmpty && snapshots_.back().phase == snapshot.phase) {
        snapshots_.back() = snapshot;
    } else {
        snapshots_.push_back(snapshot);
    }
    return wasEmpty;
}

std::vector<PairingSession::Snapshot> LatestSnapshots::take() {
    const MutexLock lock(mutex_);
    return std::exchange(snapshots_, {});
}

}  // namespace tarnik

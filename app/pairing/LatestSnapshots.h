#pragma once

#include <vector>

#include "core/foundation/Mutex.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {

// Passes a session's snapshots to the main thread. Holds only the latest snapshot of each phase, so the
// memory stays bounded when a session prints faster than the main thread reads.
//
// Shared by the session's callback, which calls put(), and the task on the main thread, which calls take().
class LatestSnapshots {
public:
    // Returns true if this was empty. The caller then posts a task that calls take().
    bool put(const PairingSession::Snapshot& snapshot);

    // Returns the snapshots in the order of their phases, and removes them.
    std::vector<PairingSession::Snapshot> take();

private:
    Mutex mutex_;
    std::vector<PairingSession::Snapshot> snapshots_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik

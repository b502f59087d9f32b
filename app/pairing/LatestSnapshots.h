#pragma once

#include <vector>

#include "core/foundation/Mutex.h"
#include "core/pairing/PairingSession.h"

namespace tarnik {

// Passes a session's snapshots to the main thread. Holds only the latest snapshot of each phase. So the
// memory stays bounded when a session prints faster than the main thread reads.
//
// Call from any thread. The session's callback calls put(). A task on the main thread calls take().
class LatestSnapshots {
public:
    // Returns true if no snapshot waited. The caller then posts a task that calls take().
    bool put(const PairingSession::Snapshot& snapshot);

    // Removes the snapshots and returns them in the order of their phases.
    std::vector<PairingSession::Snapshot> take();

private:
    Mutex mutex_;
    std::vector<PairingSession::Snapshot> snapshots_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik

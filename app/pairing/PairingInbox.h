#pragma once

#include <mutex>
#include <vector>

#include "core/pairing/PairingSession.h"

namespace tarnik {

// Passes a session's snapshots to the main thread. Holds only the latest snapshot of each phase, so the
// memory stays bounded when a session prints faster than the main thread reads.
//
// Shared by the session's callback, which calls put(), and the task on the main thread, which calls take().
class PairingInbox {
public:
    // Returns true if the inbox was empty. The caller then posts a task that calls take().
    bool put(const PairingSession::Snapshot& snapshot);

    // Returns the snapshots in the order of their phases, and empties the inbox.
    std::vector<PairingSession::Snapshot> take();

private:
    std::mutex mutex_;
    std::vector<PairingSession::Snapshot> snapshots_;  // guarded by mutex_
};

}  // namespace tarnik

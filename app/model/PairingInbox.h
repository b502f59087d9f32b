#pragma once

#include <mutex>
#include <vector>

#include "core/pairing/PairingSession.h"

namespace tarnik {

// Carries a session's snapshots to the main thread: of those that wait, the latest of each phase, in order.
// It holds at most one for each phase, however fast the session is and however slow its reader.
//
// Shared by the session's callback, which puts, and the task on the main thread, which takes.
class PairingInbox {
public:
    // Returns true if the inbox was empty, so that a task has to be posted that takes.
    bool put(const PairingSession::Snapshot& snapshot);

    std::vector<PairingSession::Snapshot> take();

private:
    std::mutex mutex_;
    std::vector<PairingSession::Snapshot> snapshots_;
};

}  // namespace tarnik

#pragma once

#include <deque>
#include <functional>
#include <optional>

#include "core/foundation/Mutex.h"
#include "core/pairing/PairingSnapshot.h"

namespace tarnik {

// Reports the changes of a pairing session in order and one at a time, on the threads that call report().
//
// Owned by the session. Unreported changes within one phase are merged, so the queue stays short behind a
// slow callback. Call from any thread.
class PairingReporter {
public:
    // report() calls these operations with no lock held. An operation may call the reporter.
    struct Operations {
        std::function<PairingSnapshot(const PairingPhase&)> snapshot;  // with the current text
        std::function<void(const PairingSnapshot&)> onUpdate;
        std::function<void(ExitStatus)> onExit;
    };
    explicit PairingReporter(Operations operations);

    // Queues a change to `phase`. onExit is called right after the report of a change that has an `exit`.
    void add(const PairingPhase& phase, std::optional<ExitStatus> exit = std::nullopt)
        TARNIK_EXCLUDES(mutex_);

    // Reports all queued changes. Returns at once if an earlier call is in progress, on another thread or
    // further up this thread's stack. The earlier call then reports the changes.
    void report() TARNIK_EXCLUDES(mutex_);

private:
    struct Change {
        PairingPhase phase;
        std::optional<ExitStatus> exit;
    };

    const Operations operations_;

    Mutex mutex_;
    std::deque<Change> changes_ TARNIK_GUARDED_BY(mutex_);
    bool isReporting_ TARNIK_GUARDED_BY(mutex_) = false;
};

}  // namespace tarnik

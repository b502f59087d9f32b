#pragma once

#include <deque>
#include <functional>
#include <optional>

#include "core/foundation/Mutex.h"
#include "core/pairing/PairingSnapshot.h"

namespace tarnik {

// Reports the changes of a pairing session in order and one at a time, on whichever thread calls report().
//
// Owned by its session. Of several unreported changes within one phase only the last is reported, so the
// queue stays short behind a slow callback. Call from any thread.
class PairingReporter {
public:
    // Called by report() with no lock held. They may call back into the reporter.
    struct Operations {
        std::function<PairingSnapshot(const PairingPhase&)> snapshot;  // with the current text
        std::function<void(const PairingSnapshot&)> onUpdate;
        std::function<void(ExitStatus)> onExit;
    };
    explicit PairingReporter(Operations operations);

    // Queues a change to `phase`. `exit` is passed once, when the command has exited, and is reported right
    // after this change.
    void add(const PairingPhase& phase, std::optional<ExitStatus> exit = std::nullopt)
        TARNIK_EXCLUDES(mutex_);

    // Reports all queued changes. Returns at once if another call is in progress, on another thread or
    // further up the stack of this one; that call reports the changes.
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

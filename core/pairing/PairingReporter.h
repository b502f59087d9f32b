#pragma once

#include <deque>
#include <functional>
#include <optional>

#include "core/foundation/Mutex.h"
#include "core/pairing/PairingSnapshot.h"

namespace tarnik {

// Reports the changes of a pairing session in order, one call at a time, although they come from several
// threads.
//
// Owned by its session. Of several unreported changes within one phase only the last is reported, so nothing
// piles up behind a slow listener. Call from any thread.
class PairingReporter {
public:
    // Called by report() with no lock held. They may call back into the reporter.
    struct Operations {
        std::function<PairingSnapshot(const PairingPhase&)> snapshot;  // with the text of the moment
        std::function<void(const PairingSnapshot&)> onUpdate;
        std::function<void(ExitStatus)> onExit;
    };
    explicit PairingReporter(Operations operations);

    // Queues a change, after which the session is in `phase`. `exit` is the command's exit, given once: it is
    // reported right after this change.
    void add(const PairingPhase& phase, std::optional<ExitStatus> exit = std::nullopt)
        TARNIK_EXCLUDES(mutex_);

    // Reports all queued changes. Returns at once if a call is in progress already, on another thread or
    // further up this one's stack: that call reports them.
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

#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <optional>

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
    void add(const PairingPhase& phase, std::optional<ExitStatus> exit = std::nullopt);

    // Reports all queued changes. Returns at once if a call is in progress already, on another thread or
    // further up this one's stack: that call reports them.
    void report();

private:
    struct Change {
        PairingPhase phase;
        std::optional<ExitStatus> exit;
    };

    const Operations operations_;

    std::mutex mutex_;  // guards the fields below
    std::deque<Change> changes_;
    bool isReporting_ = false;
};

}  // namespace tarnik

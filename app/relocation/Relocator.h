#pragma once

#include <atomic>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

#include "app/platform/BundleOperations.h"
#include "app/platform/MainThread.h"
#include "app/relocation/HandedLink.h"
#include "app/relocation/InterruptibleSleep.h"
#include "app/relocation/RelocationOutcome.h"
#include "app/relocation/RelocationRecord.h"
#include "core/foundation/CallbackGuard.h"
#include "core/foundation/SerialQueue.h"
#include "core/foundation/SystemError.h"
#include "core/process/SpawnRequest.h"
#include "core/relocation/RecordLine.h"

namespace tarnik {

// The effects of Relocator.
struct RelocatorDeps {
    BundleOperations bundles;
    MainThread mainThread;
    std::string applicationSupport;  // contains the folder of the record and of a handed link
    std::string installPath;
    pid_t pid = 0;  // of this process
    bool isDevelopmentBuild = false;

    // Starts a child that outlives this process.
    std::function<std::expected<void, SystemError>(const SpawnRequest&)> spawn;
    InterruptibleSleep sleep;
    std::function<Relocation::RecordTime()> now;
    std::function<std::shared_ptr<SerialQueue>(const std::string& label)> makeQueue;

    static RelocatorDeps production(BundleOperations bundles, MainThread mainThread,
                                    std::string applicationSupport);
};

// Moves the application to the install path, or opens the copy there. The system keeps privacy switches only
// for a copy at that path. Each launch adds a line to the relocation record. Does nothing on a system where
// applications aren't moved.
//
// Owned by Application. Main thread only. Slow work runs on the queue "tarnik.relocator". The destructor
// interrupts waits for another copy. It blocks until a running copy operation, signature check or prompt of
// the trash has ended.
class Relocator {
public:
    using Outcome = RelocationOutcome;

    explicit Relocator(RelocatorDeps deps);
    ~Relocator();
    Relocator(const Relocator&) = delete;
    Relocator& operator=(const Relocator&) = delete;

    // Call once, at launch. Calls `done` later on the main thread, unless the relocator is destroyed first.
    // Each older copy that has to quit may delay the call by 35 s.
    void relocateIfNeeded(std::function<void(Outcome)> done);

    // Records that the window was opened, and the reason.
    void recordWindow(const std::string& reason);

    // Pass a link from this copy to the copy that replaces it. Block while they write or read a small file.
    // Do nothing where applications aren't moved.
    void handLinkOn(const std::string& link) const;
    std::optional<std::string> takeHandedLink() const;

private:
    const RelocatorDeps deps_;
    const RelocationRecord record_;  // used on the queue only
    const HandedLink handedLink_;
    std::atomic<bool> ending_ = false;
    const std::shared_ptr<SerialQueue> queue_;  // null where applications aren't moved
    const CallbackGuard guard_;
};

}  // namespace tarnik

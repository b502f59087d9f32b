#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/relocation/HandedLink.h"
#include "app/relocation/RelocationOutcome.h"
#include "app/relocation/RelocationRecord.h"
#include "app/relocation/RelocatorDeps.h"

namespace tarnik {

// Moves the application to where its privacy switches stick, or opens the copy that is there already, and
// keeps the record of it. On a system where applications aren't moved it does nothing.
//
// Owned by AppDelegate. Main thread; what takes long happens on the queue "tarnik.relocator". Its end cuts
// every wait short and begins nothing new; a copy or a signature check that is on is waited for.
class Relocator {
public:
    using Outcome = RelocationOutcome;

    explicit Relocator(RelocatorDeps deps);
    ~Relocator();
    Relocator(const Relocator&) = delete;
    Relocator& operator=(const Relocator&) = delete;

    // Once, at launch. `done` comes on the main thread, later, and only while the relocator lives. It may
    // take half a minute, when an older copy has to quit first.
    void relocateIfNeeded(std::function<void(Outcome)> done);

    // Notes that the window was opened.
    void recordWindow(const std::string& reason);

    // From a copy that makes way to the one that is opened in its place. Nothing where applications aren't
    // moved.
    void handLinkOn(const std::string& link) const;
    std::optional<std::string> takeHandedLink() const;

private:
    const RelocatorDeps deps_;
    const RelocationRecord record_;  // on the queue
    const HandedLink handedLink_;
    std::atomic<bool> ending_ = false;
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    const std::shared_ptr<SerialQueue> queue_;  // none where applications aren't moved
};

}  // namespace tarnik

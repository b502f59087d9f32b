#pragma once

#include <functional>
#include <string>
#include <variant>

#include <sys/types.h>

#include "core/foundation/Time.h"
#include "core/process/ExitStatus.h"

namespace tarnik {

namespace ChildEvents {

struct Started {  // the child runs
    pid_t pid = 0;
    bool operator==(const Started&) const = default;
};
struct StartFailed {     // the child didn't start, or didn't become ready
    std::string reason;  // one line
    bool operator==(const StartFailed&) const = default;
};
struct Ended {  // the child ended without a stop by its owner
    ExitStatus status;
    bool operator==(const Ended&) const = default;
};
struct Stopped {  // the owner stopped the child
    bool operator==(const Stopped&) const = default;
};
struct RestartPlanned {  // the owner starts the child again after the delay
    Seconds delay = Seconds::zero();
    bool operator==(const RestartPlanned&) const = default;
};
struct GivenUp {  // no restart is planned, although the child is wanted
    bool operator==(const GivenUp&) const = default;
};

}  // namespace ChildEvents

// An event of a child that its owner keeps running, for records. Events show more than the owner's state: two
// failed starts with the same delay are two events.
using ChildEvent = std::variant<ChildEvents::Started, ChildEvents::StartFailed, ChildEvents::Ended,
                                ChildEvents::Stopped, ChildEvents::RestartPlanned, ChildEvents::GivenUp>;

// Called on the owner's private queue. Must not block, and must not call the owner.
using OnChildEvent = std::function<void(const ChildEvent&)>;

}  // namespace tarnik

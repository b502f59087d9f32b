#pragma once

#include <expected>
#include <utility>

#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Exclusive use of a node home by one process, until this object goes or the process ends, however it ends.
//
// An flock on the folder itself: the kernel releases it with the process, and children don't inherit it.
class NodeHomeLock {
public:
    struct Failure {
        enum class Reason {
            heldElsewhere,  // by another process, or by another lock of this one
            unavailable,    // the folder can't be made or opened, or its file system has no locks
        };
        Reason reason;
        SystemError error;
    };

    // Locks the folder without waiting, and makes it first if nothing is there: a claim accepts it while it
    // is empty. A path that a claim refuses is unavailable, since the claim names the reason.
    static std::expected<NodeHomeLock, Failure> take(const NodeHome& home);

private:
    explicit NodeHomeLock(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik

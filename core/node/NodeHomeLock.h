#pragma once

#include <expected>
#include <utility>

#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Exclusive use of a node home by one process, from take() until this object is destroyed.
//
// An flock on the folder itself, which the kernel releases when the process ends. Children don't inherit it.
// The lock belongs to the folder and not to its path: a home that is deleted and created anew is unlocked.
class NodeHomeLock {
public:
    struct Failure {
        enum class Reason {
            heldElsewhere,  // by another process, or by another NodeHomeLock of this one
            unavailable,    // the folder can't be created or opened, or its file system has no locks
        };
        Reason reason;
        SystemError error;
    };

    // Locks the folder without waiting. Creates it if it doesn't exist, since a claim accepts an empty
    // folder. Fails with unavailable for a path that a claim refuses; the claim returns the reason.
    static std::expected<NodeHomeLock, Failure> take(const NodeHome& home);

private:
    explicit NodeHomeLock(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik

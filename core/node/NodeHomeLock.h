#pragma once

#include <expected>
#include <utility>

#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// An exclusive lock on a node home, held from take() until this object is destroyed.
//
// Uses flock(2) on the folder itself. The kernel releases the lock when the process ends, and children don't
// inherit it. The lock belongs to the folder and not to its path, so a home that is deleted and created again
// is unlocked.
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
    // folder. Fails with unavailable for a path that is not a folder; a later claim returns that reason.
    static std::expected<NodeHomeLock, Failure> take(const NodeHome& home);

private:
    explicit NodeHomeLock(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik

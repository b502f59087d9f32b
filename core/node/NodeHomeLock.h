#pragma once

#include <expected>
#include <utility>

#include "core/foundation/Files.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// An exclusive lock on a node home, held from take() until this object is destroyed.
//
// Uses flock(2) on the folder itself. The kernel releases the lock when the process ends. Children don't
// inherit the lock. The lock belongs to the folder and not to its path, so a home that is deleted and created
// again is unlocked.
class NodeHomeLock {
public:
    struct Failure {
        enum class Reason {
            heldElsewhere,  // by another process, or by another NodeHomeLock in this process
            unavailable,    // the folder can't be created or opened, or its file system has no locks
        };
        Reason reason;
        SystemError error;
    };

    // Locks the folder without waiting. Creates a missing folder, because a claim accepts an empty folder.
    // Fails with `unavailable` if the path is not a folder. NodeHome::claim() then returns the reason.
    static std::expected<NodeHomeLock, Failure> take(const NodeHome& home);

private:
    explicit NodeHomeLock(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik

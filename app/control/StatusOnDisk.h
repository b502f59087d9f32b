#pragma once

#include <expected>

#include "app/control/Status.h"
#include "app/platform/SystemFolders.h"
#include "app/policy/PolicyReading.h"
#include "core/node/NodeHome.h"

namespace tarnik {

// Returns the status of a program that doesn't run, from the files that it has left: the node home and the
// journal.
Status statusOnDisk(const std::expected<NodeHome, NodeHome::ResolveError>& home, const SystemFolders& folders,
                    WallTime now, const PolicyReading& policy = {});

}  // namespace tarnik

#pragma once

#include <vector>

#include "app/platform/BundleOperations.h"
#include "core/process/ProcessEntry.h"

// The order of the running copies of the application. A copy that starts compares itself with the earlier
// copies only; Relocation::runningCopyAction() decides which of the two yields.
namespace tarnik::CopyOrder {

// Returns the copies that started before process `ourselves`, with their start times from `table`. The lower
// process id counts as the earlier one if both started at the same moment. Leaves out copies that `table`
// lacks, because they have ended. Returns an empty list if `table` lacks the start time of `ourselves`.
std::vector<OtherCopy> startedBefore(pid_t ourselves, std::vector<OtherCopy> copies,
                                     const std::vector<ProcessEntry>& table);

// Returns true if `table` has this copy, and not another process that reuses its id.
bool contains(const std::vector<ProcessEntry>& table, const OtherCopy& copy);

}  // namespace tarnik::CopyOrder

#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/process/ProcessEntry.h"

namespace tarnik {

// Finds the descendants of a process, using two queries of the system about a single process. They return
// std::nullopt on failure and if the process has ended.
struct ProcessTree {
    std::function<std::optional<std::vector<pid_t>>(pid_t)> children;
    std::function<std::optional<ProcessEntry>(pid_t)> entry;

    // Returns the descendants of `ancestor` in breadth-first order. Processes may start, end and change
    // parents meanwhile, and a list of children may then be incomplete. So this returns std::nullopt unless
    // two walks find the same processes and each is still the child of its parent.
    std::optional<std::vector<ProcessEntry>> under(pid_t ancestor) const;
};

}  // namespace tarnik

#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/process/ProcessEntry.h"

namespace tarnik {

// Finds the descendants of a process by two queries about single processes. Each query returns std::nullopt
// on failure, and if the process has ended.
struct ProcessTree {
    std::function<std::optional<std::vector<pid_t>>(pid_t)> children;
    std::function<std::optional<ProcessEntry>(pid_t)> entry;

    // Returns the descendants of `ancestor` in breadth-first order. A list of children may be incomplete if
    // processes start or end during a walk. So this returns std::nullopt unless two walks find the same
    // processes and each process then still has the same parent. Also returns std::nullopt if a query fails
    // or the descendants are too many.
    std::optional<std::vector<ProcessEntry>> under(pid_t ancestor) const;
};

}  // namespace tarnik

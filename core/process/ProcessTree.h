#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/process/ProcessEntry.h"

namespace tarnik {

// How a system answers about one process; none when it can't, or the process is gone.
struct ProcessTree {
    std::function<std::optional<std::vector<pid_t>>(pid_t)> children;
    std::function<std::optional<ProcessEntry>(pid_t)> entry;

    // What descends from `ancestor`, breadth by breadth. Processes start, end and change parents while we
    // look, and a system's list of children may then lack one: the answer is none unless two looks saw the
    // same and every process still is the child of the one it was found under.
    std::optional<std::vector<ProcessEntry>> under(pid_t ancestor) const;
};

}  // namespace tarnik

#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

#include "core/foundation/Time.h"

namespace tarnik {

// A process of the system. Its id is used again after its end: only id and start time together tell which
// process is meant.
struct ProcessEntry {
    pid_t pid = 0;
    pid_t parent = 0;
    std::optional<std::string> path;  // of its program; none where the system doesn't tell
    std::optional<ProcessTime> started;

    bool operator==(const ProcessEntry&) const = default;
};

}  // namespace tarnik

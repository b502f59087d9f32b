#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

#include "core/foundation/Time.h"

namespace tarnik {

// A process of the system. Ids are reused: only id and start time together identify a process.
struct ProcessEntry {
    pid_t pid = 0;
    pid_t parent = 0;
    std::optional<std::string> path;  // of the program; std::nullopt if unknown
    std::optional<ProcessTime> started;

    bool operator==(const ProcessEntry&) const = default;
};

}  // namespace tarnik

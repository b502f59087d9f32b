#pragma once

#include <string>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// Returns a shell command that waits for the end of the process `old`, then opens the bundle with
// Relocation::relaunchArgument. The shell inherits nothing and outlives this process.
SpawnRequest relaunchAfter(pid_t old, const std::string& bundle);

}  // namespace tarnik

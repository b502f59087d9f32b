#pragma once

#include <string>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// Returns a shell command that waits until the process `old` has ended and then opens the bundle with
// Relocation::relaunchArgument. The shell outlives this process. The shell inherits no descriptors, and its
// environment contains only PATH.
SpawnRequest relaunchAfter(pid_t old, const std::string& bundle);

}  // namespace tarnik

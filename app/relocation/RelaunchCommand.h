#pragma once

#include <string>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// Returns a shell command that waits until the process `old` has ended, then opens the bundle with
// Relocation::relaunchArgument. The shell outlives this process. It inherits no descriptors and no
// environment.
SpawnRequest relaunchAfter(pid_t old, const std::string& bundle);

}  // namespace tarnik

#pragma once

#include <string>

#include <sys/types.h>

#include "core/process/SpawnRequest.h"

namespace tarnik {

// A shell that waits until the process `old` is gone, and then opens the bundle, telling the new process that
// it was started by a relocation. It inherits nothing and outlives us.
SpawnRequest relaunchAfter(pid_t old, const std::string& bundle);

}  // namespace tarnik

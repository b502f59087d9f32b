#pragma once

#include <string>

#include <sys/types.h>

#include "core/foundation/Time.h"
#include "core/process/MacProcesses.h"

// Queries about processes that may not be our children.
namespace tarnik::ProcessInspection {

using MacProcesses::executablePath;

// Returns true if both paths are the same once their links are resolved.
bool samePath(const std::string& one, const std::string& other);

// Waits up to `timeout` until the process no longer exists. Returns true if it doesn't, or if `pid` is below
// 2. An unreaped child and a process of another user exist.
bool waitForExit(pid_t pid, Seconds timeout);

}  // namespace tarnik::ProcessInspection

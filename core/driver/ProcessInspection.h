#pragma once

#include <string>

#include <sys/types.h>

#include "core/foundation/Time.h"
#include "core/process/MacProcesses.h"

// Queries about processes that may not be our children.
namespace tarnik::ProcessInspection {

using MacProcesses::executablePath;

// Returns true if both paths are equal after their links are resolved.
bool samePath(const std::string& one, const std::string& other);

// Waits up to `timeout` for the end of the process. Returns true if no process has the id, or if `pid` is
// below 2. Processes of other users and unreaped children count as existing.
bool waitForExit(pid_t pid, Seconds timeout);

}  // namespace tarnik::ProcessInspection

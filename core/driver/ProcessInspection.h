#pragma once

#include <string>

#include <sys/types.h>

#include "core/foundation/Time.h"
#include "core/process/MacProcesses.h"

// Questions about processes that need not be our children.
namespace tarnik::ProcessInspection {

using MacProcesses::executablePath;

// Whether both paths lead to the same place, once their links are followed.
bool samePath(const std::string& one, const std::string& other);

// Blocks until the process is gone, at most for `timeout`; true when it is gone. Ids below 2 count as gone.
// A child that nobody has reaped yet, and a process of another user, are there.
bool waitForExit(pid_t pid, Seconds timeout);

}  // namespace tarnik::ProcessInspection

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/process/ProcessEntry.h"

// Queries about any process of this machine. Call from any thread. Results are not cached.
namespace tarnik::MacProcesses {

// Returns the processes that the system shows to this user. The user's own processes are always included. A
// process that ends during the call may be missing. Returns std::nullopt if the list can't be read.
std::optional<std::vector<ProcessEntry>> table();

// Returns at least the descendants of `ancestor`. This is much cheaper than table() where the system lists
// the children of a process. Returns table() on other systems, and if ProcessTree::under() fails.
std::optional<std::vector<ProcessEntry>> tableUnder(pid_t ancestor);

// Returns the path of the process's program, or std::nullopt if the path is unknown. The path stays the same
// if the program's file is removed or replaced.
std::optional<std::string> executablePath(pid_t pid);

// Returns the sum of the process's user and system processor time. Returns std::nullopt if the process has
// ended or can't be read.
std::optional<double> cpuSeconds(pid_t pid);

}  // namespace tarnik::MacProcesses

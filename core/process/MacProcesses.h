#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/process/ProcessEntry.h"

// Queries about any process of this machine. Call from any thread. Results are not cached.
namespace tarnik::MacProcesses {

// Returns the processes of the system in one pass, without those that the system hides from this user; the
// user's own are never hidden. A process that ends meanwhile may be missing. Returns std::nullopt if the list
// can't be read.
std::optional<std::vector<ProcessEntry>> table();

// Returns at least the descendants of `ancestor`. Much cheaper than table() where the system lists the
// children of a process. Elsewhere, and if the descendants change meanwhile, returns table().
std::optional<std::vector<ProcessEntry>> tableUnder(pid_t ancestor);

// Returns the path of the process's program, or std::nullopt if it is unknown. A program whose file was
// removed or replaced keeps its path.
std::optional<std::string> executablePath(pid_t pid);

// Returns the processor time of the process, user and system; std::nullopt if the process has ended.
std::optional<double> cpuSeconds(pid_t pid);

}  // namespace tarnik::MacProcesses

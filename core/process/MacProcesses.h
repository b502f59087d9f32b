#pragma once

#include <optional>
#include <vector>

#include "core/process/ProcessEntry.h"

// The processes of this machine, ours or not. From any thread; every call reads anew and keeps nothing.
namespace tarnik::MacProcesses {

// All processes of the system, one pass over them. What ends meanwhile is in it or not. None when the list
// can't be had, or would lack processes that are there.
std::optional<std::vector<ProcessEntry>> table();

// A table with at least everything that descends from `ancestor`, for far less than table() where the system
// lists the children of a process. Otherwise, and whenever the family changes during the look, table().
std::optional<std::vector<ProcessEntry>> tableUnder(pid_t ancestor);

// The processor time that the process has used, user and system; none when it is gone.
std::optional<double> cpuSeconds(pid_t pid);

}  // namespace tarnik::MacProcesses

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/process/ProcessEntry.h"

// The processes of this machine, ours or not. From any thread; every call reads anew and keeps nothing.
namespace tarnik::MacProcesses {

// All processes of the system that we may ask about, in one pass. A process that ends meanwhile is in it or
// not. Leaves out those that the system hides from this user, who is never refused his own. std::nullopt when
// the list can't be read.
std::optional<std::vector<ProcessEntry>> table();

// A table with at least everything that descends from `ancestor`, for far less than table() where the system
// lists the children of a process. Otherwise, and whenever the family changes during the look, table().
std::optional<std::vector<ProcessEntry>> tableUnder(pid_t ancestor);

// The path of the program that the process runs; std::nullopt when the system doesn't tell. A program whose
// file was removed or replaced keeps its path.
std::optional<std::string> executablePath(pid_t pid);

// The processor time that the process has used, user and system; none when it is gone.
std::optional<double> cpuSeconds(pid_t pid);

}  // namespace tarnik::MacProcesses

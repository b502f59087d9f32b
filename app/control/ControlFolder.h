#pragma once

#include <string>
#include <vector>

#include "app/platform/SystemFolders.h"
#include "core/process/Environment.h"

// The private folder of the control socket.
namespace tarnik::ControlFolder {

inline constexpr const char* socketName = "control.sock";

// Returns the folders in which the socket may be, the preferred one first. The running program uses the first
// one that it can; other programs try each, because their environment may differ.
//
// On Linux the first is the folder `tarnik` in $XDG_RUNTIME_DIR, or in /run/user/UID if the variable is not
// set and that folder is private. The last, which macOS has alone, is in the application support folder.
std::vector<std::string> candidates(const Environment& environment, const SystemFolders& folders);

// Returns the path of the socket in this folder.
std::string socketPath(const std::string& folder);

}  // namespace tarnik::ControlFolder

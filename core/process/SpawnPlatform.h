#pragma once

#include <chrono>

#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/types.h>

// System calls for starting children that differ between systems.
namespace tarnik {

// A program file that was just written can't be run (ETXTBSY) while a child of another thread holds the file
// open for writing. The child closes the file in its exec a moment later, so the start is retried up to this
// many times.
inline constexpr int busyRetries = 50;
inline constexpr std::chrono::milliseconds busyPause(10);

// Changes `actions` or `flags` so that the child closes all descriptors but the standard ones. Call this
// after the actions that set the standard descriptors. Returns 0 or an errno value.
int closeAllOthers(posix_spawn_file_actions_t& actions, short& flags);

// Opens a pipe(2) with both ends close-on-exec. Returns 0 or an errno value.
int openPipe(int (&ends)[2]);

// Calls forkpty(3), whose header differs between systems. Stores the controlling side in `master` and returns
// the child's pid. Returns 0 in the child. Returns -1 with errno set on failure.
pid_t forkOnTerminal(int& master, winsize& size);

}  // namespace tarnik

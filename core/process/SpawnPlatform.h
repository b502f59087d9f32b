#pragma once

#include <chrono>

#include <spawn.h>

namespace tarnik {

// What systems do differently for posix_spawn and pipe. Each returns 0 or an errno value.

// A program that was only just written can't be run while a child of another thread, not yet past its own
// exec, still holds it open for writing (ETXTBSY). That lasts moments; so it is tried this often more.
inline constexpr int busyRetries = 50;
inline constexpr std::chrono::milliseconds busyPause(10);

// Adds to `actions` and `flags` whatever leaves the child no descriptor but those that `actions` name so far.
// Comes after every other action.
int closeAllOthers(posix_spawn_file_actions_t& actions, short& flags);

// pipe(2) with both ends close-on-exec.
int openPipe(int (&ends)[2]);

}  // namespace tarnik

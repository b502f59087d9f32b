#pragma once

#include <spawn.h>

namespace tarnik {

// What systems do differently for posix_spawn and pipe. Each returns 0 or an errno value.

// Adds to `actions` and `flags` whatever leaves the child no descriptor but those that `actions` name so far.
// Comes after every other action.
int closeAllOthers(posix_spawn_file_actions_t& actions, short& flags);

// pipe(2) with both ends close-on-exec.
int openPipe(int (&ends)[2]);

}  // namespace tarnik

#pragma once

#include "core/foundation/Time.h"

namespace tarnik {

// Prepares the process for child processes. Call it first in main(), before any thread starts.
//
// - Opens /dev/null at each closed descriptor of 0, 1 and 2, so that no other file gets these numbers.
// - Ignores SIGPIPE. So a write to a dead child fails and doesn't end the program. Children get the default
//   action.
// - Resets SIGCHLD, because the exit statuses of children are lost if SIGCHLD is ignored.
// - Makes the program exit with a message if a required thread can't be started.
void setUpProcess();

// Exits with the message that a required thread can't be started. Call from any thread.
[[noreturn]] void exitOutOfThreads();

// Ends the process with `exitStatus` if it still runs after `limit`. The end of the program writes logs and
// removes files, so a disk that hangs would hold it otherwise. If no thread is available, nothing is limited.
void endWithin(Seconds limit, int exitStatus);

}  // namespace tarnik

#pragma once

namespace tarnik {

// Prepares the process for child processes. Call it first in main(), before any thread starts.
//
// - Opens descriptors 0, 1 and 2 on /dev/null where they are closed, so that no descriptor of ours gets these
//   numbers.
// - Ignores SIGPIPE: writing to a dead child fails instead of ending the program. Children get the default.
// - Resets SIGCHLD: if it is ignored, the exit statuses of children are lost.
// - Makes the program exit with a message if a required thread can't be started.
void setUpProcess();

// Exits with the message that a required thread can't be started. Call from any thread.
[[noreturn]] void exitOutOfThreads();

}  // namespace tarnik

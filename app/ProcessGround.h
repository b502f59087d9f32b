#pragma once

namespace tarnik {

// Makes the process fit to own children, whatever started it. First thing in main(), before any thread.
//
// - Descriptors 0, 1 and 2 are open (on /dev/null where they were not), so that nothing of ours lands there.
// - SIGPIPE is ignored: writing to a dead child is an error, not the end. Children get the default back.
// - SIGCHLD is at its default: ignored, it would take every child's exit status from us.
// - A thread that can't be made, and that nothing works without, ends the program with a sentence.
void layProcessGround();

// Ends the program with a sentence: a thread that nothing works without can't be made. From any thread.
[[noreturn]] void endForLackOfThreads();

}  // namespace tarnik

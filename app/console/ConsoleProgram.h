#pragma once

#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/model/Machine.h"

namespace tarnik {

// Runs the application with the terminal as its face, to the end; returns the exit status. On the main
// thread, before any other thread was made.
//
// A program in a terminal is never moved, has no login item, and remembers nothing from run to run.
int runConsole(const CommandLine& line, Machine machine, const ProgramLocation& place);

}  // namespace tarnik

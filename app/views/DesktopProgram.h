#pragma once

#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/model/Machine.h"

namespace tarnik {

// Runs the application with a window and a status item, to the end; returns the exit status. On the main
// thread, before any other thread was made. `name` is what the program was started as.
int runDesktop(const CommandLine& line, Machine machine, const ProgramLocation& place, char* name);

// Shows one state of the window, or writes pictures of all of them; does nothing else.
int runScreens(const CommandLine& line, char* name);

}  // namespace tarnik

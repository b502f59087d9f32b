#pragma once

#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/model/HostEnvironment.h"

namespace tarnik {

// Runs the application with a window and a status item, and returns the exit status. `name` is the program's
// argument 0. Main thread; call before any other thread exists.
int runDesktop(const CommandLine& line, HostEnvironment host, const ProgramLocation& place, char* name);

// Shows one state of the window, or writes a picture of each state into a folder. Returns the exit status.
int runScreens(const CommandLine& line, char* name);

}  // namespace tarnik

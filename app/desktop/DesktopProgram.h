#pragma once

#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/model/HostEnvironment.h"

namespace tarnik {

// Runs the application with a window and a status item, and returns the exit status. `name` is the name that
// the program was started with. Main thread; call before any other thread exists.
int runDesktop(const CommandLine& line, HostEnvironment host, const ProgramLocation& place, char* name);

// Shows one state of the window, or writes a picture of each state into a folder.
int runScreens(const CommandLine& line, char* name);

}  // namespace tarnik
